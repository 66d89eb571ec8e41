#pragma once

#include <QStringList>
#include <QWidget>

#include <vector>

class QLineEdit;

// Fields for the bytes of a frame, in hexadecimal. The next field follows by itself when one is
// full, and pasted bytes spread over those that follow.
class CanByteFields : public QWidget
{
    Q_OBJECT

public:
    static constexpr int maxBytes = 64;

    explicit CanByteFields(QWidget *parent = nullptr);

    // So many fields, the others are hidden.
    void showFields(int count);
    // The fields of as many whole rows as the bytes need, at least of one.
    [[nodiscard]] static int rowsFor(int bytes);
    // The first ones of them.
    void enableFields(int count);

    // Of all fields.
    [[nodiscard]] QStringList texts() const;
    void focusField(int position);
    // The tab key leads from the first widget through the fields to the last one.
    void setTabOrderBetween(QWidget *first, QWidget *last);

signals:
    void returnPressed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeField(int position);
    void paste(int position, const QString &text);
    void moveOn(int position);

    std::vector<QLineEdit *> m_fields;
    std::vector<QWidget *> m_rowLabels;    // of each row of fields
    std::vector<QWidget *> m_columnLabels; // of each column
};
