#pragma once

#include <QDialog>

#include <memory>
#include <vector>

class QLineEdit;

namespace Ui {
class DialogCanExpOptsCfg;
}

// Edits how the channel groups of a CAN channel or of the ethernet port are called in a converted
// file, and shows the names while they change.
class DialogCanExpOptsCfg : public QDialog
{
    Q_OBJECT

public:
    // `label` is that of groupnames::PortName, `mode` holds its bits.
    DialogCanExpOptsCfg(const QString &label, int number, const QString &customName, quint8 mode,
                        QWidget *parent = nullptr);
    ~DialogCanExpOptsCfg() override;

    // As edited; they count if the dialog was accepted.
    [[nodiscard]] QString customName() const;
    [[nodiscard]] quint8 mode() const; // with all other bits of the mode that was handed in

private:
    void addNames();
    void showNames();

    struct NameOfKind
    {
        QString kind;
        QLineEdit *line;
    };

    const QString m_label;
    const int m_number;
    const quint8 m_mode; // as handed in
    std::unique_ptr<Ui::DialogCanExpOptsCfg> m_ui;
    std::vector<NameOfKind> m_names;
};
