#include "config/streamingtest.h"

#include <QTest>

class tst_StreamingTest : public QObject
{
    Q_OBJECT

private slots:
    void everyClassPassesAndIsLogged();
};

void tst_StreamingTest::everyClassPassesAndIsLogged()
{
    for (const char *line :
         {"StreamingClass_A2L_CFG - Passed", "StreamingClass_A2L_DAQ - Passed",
          "StreamingClass_A2L_ODT - Passed", "StreamingClass_A2L_ODT_ELEMENT - Passed",
          "StreamingClass_A2L_RASTER_EVENT - Passed", "StreamingClass_Cfg_Ethernet - Passed",
          "Returning all passed.. true"})
        QTest::ignoreMessage(QtDebugMsg, line);
    QVERIFY(StreamingTest().run());
}

QTEST_GUILESS_MAIN(tst_StreamingTest)
#include "tst_streamingtest.moc"
