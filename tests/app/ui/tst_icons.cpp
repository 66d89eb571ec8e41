#include "app/ui/icons.h"

#include <QPixmap>
#include <QTest>

class tst_Icons : public QObject
{
    Q_OBJECT

private slots:
    void noTwoSymbolsLookTheSame();
    void aDisabledIconIsFainter();
    void aColouredIconHasItsColour();
    void anIconFillsEverySize_data();
    void anIconFillsEverySize();

private:
    static QImage picture(const QIcon &icon, int side = 24, QIcon::Mode mode = QIcon::Normal)
    {
        return icon.pixmap(QSize(side, side), mode).toImage();
    }
};

void tst_Icons::noTwoSymbolsLookTheSame()
{
    QList<QImage> pictures;
    for (int i = 0; i <= static_cast<int>(icons::Symbol::Warning); ++i) {
        const QImage one = picture(icons::icon(static_cast<icons::Symbol>(i)));
        QVERIFY2(!pictures.contains(one), qPrintable(QString::number(i)));
        pictures += one;
    }
}

void tst_Icons::aDisabledIconIsFainter()
{
    const QIcon icon = icons::icon(icons::Symbol::Connect);
    QVERIFY(picture(icon) != picture(icon, 24, QIcon::Disabled));
}

void tst_Icons::aColouredIconHasItsColour()
{
    const QImage red = picture(icons::icon(icons::Symbol::Info, Qt::red));
    const QColor stroke = red.pixelColor(12, 14); // of the letter
    QVERIFY(stroke.alpha() > 0);
    QCOMPARE(QColor(stroke.rgb()), QColor(Qt::red));
}

void tst_Icons::anIconFillsEverySize_data()
{
    QTest::addColumn<int>("side");
    for (const int side : {16, 24, 32, 64, 256})
        QTest::addRow("%d", side) << side;
}

void tst_Icons::anIconFillsEverySize()
{
    QFETCH(int, side);
    const QImage image = picture(icons::icon(icons::Symbol::Group), side);
    QCOMPARE(image.size(), QSize(side, side));
    bool paintedAtTheEnd = false; // the last sixth holds the right hand boxes' edge
    for (int y = 0; y < side; ++y)
        for (int x = side * 5 / 6; x < side; ++x)
            paintedAtTheEnd = paintedAtTheEnd || image.pixelColor(x, y).alpha() > 0;
    QVERIFY(paintedAtTheEnd);
}

QTEST_MAIN(tst_Icons)
#include "tst_icons.moc"
