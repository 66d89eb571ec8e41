#include "app/ui/headermemory.h"

#include "app/ui/settingsstore.h"

#include <QEvent>
#include <QHeaderView>
#include <QTableView>

// A table of other columns must not take the widths of an older version's.
HeaderMemory::HeaderMemory(QTableView *table, const QString &key)
    : QObject(table)
    , m_table(table)
    , m_key(QStringLiteral("TableHeads/%1-%2").arg(key).arg(table->horizontalHeader()->count()))
{
    table->installEventFilter(this);
    const auto noteChange = [this] { m_isChanged = m_isShown; };
    QHeaderView *header = table->horizontalHeader();
    connect(header, &QHeaderView::sectionResized, this, noteChange);
    connect(header, &QHeaderView::sortIndicatorChanged, this, noteChange);
    if (table->isVisible())
        restore();
}

HeaderMemory::~HeaderMemory() = default;

bool HeaderMemory::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show)
        restore();
    else if (event->type() == QEvent::Hide)
        save();
    return QObject::eventFilter(watched, event);
}

void HeaderMemory::restore()
{
    const QByteArray state = SettingsStore().value(m_key).toByteArray();
    if (!state.isEmpty())
        m_table->horizontalHeader()->restoreState(state);
    m_isShown = true;
    m_isChanged = false;
}

void HeaderMemory::save()
{
    if (m_isChanged)
        SettingsStore().setValue(m_key, m_table->horizontalHeader()->saveState());
    m_isShown = false;
    m_isChanged = false;
}
