#include "MDF4Conversion/lib_mdf4/mdf4/m4streams.h"
#include "MDF4Conversion/lib_mdf4/mdf4/mdf4file.h"
#include "tests/support/mdf4reader.h"
#include "tests/support/memorydevice.h"

#include <QTemporaryDir>
#include <QtTest>

class tst_MDF4File : public QObject
{
    Q_OBJECT

private slots:
    void idBlockToTheByte();
    void idBlockOfOtherVersionsAndPrograms_data();
    void idBlockOfOtherVersionsAndPrograms();
    void headerBlockToTheByte();
    void fileWithoutGroupsIsComplete();
    void startTimeStandsInTheHeader();
    void commentsAreRead();
    void secondCommentDoesNotReplaceTheFirst();
    void groupsAndChannelsAreReadInOrder();
    void attachmentAndEventChainsStartAtTheHeader();
    void cycleCountIsPatched();
    void cycleCountOfZeroIsNotPatched();
    void onlyTheLastGroupOfARecordIdIsPatched();
    void emptyPathFails();
    void pathThatIsNotUnicodeFails();
    void pathWithOtherLettersIsUsedAsItIs();
    void createThatCannotWriteLeavesNothing();
    void useAfterAFailedCreateOnlyFails();
    void destructorClosesTheFile();
    void deviceFullAtAnyByteIsReported();
    void manyGroupsTakeFewWrites();
};

namespace {

constexpr std::uint64_t anyTime_ns = 1700000000123456789;

QByteArray hex(const MemoryFile &file, std::size_t position, std::size_t size)
{
    const auto *bytes = reinterpret_cast<const char *>(file.bytes.data());
    return QByteArray(bytes, static_cast<int>(file.bytes.size()))
        .mid(static_cast<int>(position), static_cast<int>(size))
        .toHex(' ');
}

QByteArray golden(const char *text)
{
    return QByteArray::fromHex(text).toHex(' ');
}

// A group with one channel of 4 bytes behind the time.
M4CGBlock *addGroup(MDF4File &file, M4DGBlock *&dg, const std::string &channel)
{
    dg = file.addDG();
    M4CGBlock *cg = dg != nullptr ? file.addCG(dg, 1, 12) : nullptr;
    if (cg == nullptr || cg->addTimeChannel() == nullptr)
        return nullptr;
    M4CNBlock *cn = cg->addCN(channel, CN_T_VALUE, CN_D_UNSIGNED_LE, 8, 4);
    M4CCN2T cc({{1, "one"}});
    return cn != nullptr && cn->setUnit("km/h") && cn->setConversion(cc) ? cg : nullptr;
}

void writeRecords(MDF4File &file, M4DGBlock *dg, const M4CGBlock &cg, unsigned count)
{
    file.noteCycleCount(cg);
    m4DZStreamEx stream(file, dg, m4BlockSize(12, count), 12);
    for (unsigned i = 0; i < count; ++i) {
        unsigned char record[12] = {};
        record[0] = static_cast<unsigned char>(i);
        static_cast<void>(stream.write(sizeof record, record));
    }
    file.addCycles(1, count);
    stream.close();
}

// A whole small file; what fails shows in the file.
void writeSample(MDF4File &file)
{
    if (!file.Create(u"sample"))
        return;
    file.addFH(anyTime_ns, mdf4::fileHistoryComment({"tool", "vendor", "2.19"}));
    static_cast<void>(file.setComment(mdf4::headerComment({"comment", "a", "b", "c", "d"})));
    static_cast<void>(file.setStartTime(anyTime_ns));
    for (const char *name : {"Speed", "Torque"}) {
        M4DGBlock *dg = nullptr;
        if (const M4CGBlock *cg = addGroup(file, dg, name))
            writeRecords(file, dg, *cg, 100);
    }
    file.close();
}

} // namespace

void tst_MDF4File::idBlockToTheByte()
{
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.Create(u"f", "WrtrEx", 410));
    QCOMPARE(hex(memory, 0, 64),
             golden("4D44462020202020 342E313020202020 5772747245782020 00000000 9A01"
                    "0000000000000000000000000000000000000000000000000000000000000000 0000"));
}

void tst_MDF4File::idBlockOfOtherVersionsAndPrograms_data()
{
    QTest::addColumn<QByteArray>("program");
    QTest::addColumn<unsigned>("version");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("no program") << QByteArray() << 410U << QByteArray("4.10    drugli  ");
    QTest::newRow("long program") << QByteArray("123456789") << 410U
                                  << QByteArray("4.10    12345678");
    QTest::newRow("4.00") << QByteArray("p") << 400U << QByteArray("4.00    p       ");
    QTest::newRow("4.05") << QByteArray("p") << 405U << QByteArray("4.05    p       ");
}

void tst_MDF4File::idBlockOfOtherVersionsAndPrograms()
{
    QFETCH(const QByteArray, program);
    QFETCH(const unsigned, version);
    QFETCH(const QByteArray, expected);
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.Create(u"f", program.isNull() ? nullptr : program.constData(), version));
    QCOMPARE(hex(memory, 8, 16), expected.toHex(' '));
}

void tst_MDF4File::headerBlockToTheByte()
{
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.Create(u"f"));
    QVERIFY(file.setStartTime(0x0102030405060708));
    QVERIFY(file.close());
    QCOMPARE(hex(memory, 64, 1000),
             golden("23234844 00000000 6800000000000000 0600000000000000"
                    "0000000000000000 0000000000000000 0000000000000000"
                    "0000000000000000 0000000000000000 0000000000000000"
                    "0807060504030201 0000 0000 02 00 00 00 0000000000000000 0000000000000000"));
}

void tst_MDF4File::fileWithoutGroupsIsComplete()
{
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.Create(u"f"));
    QVERIFY(file.close());
    mdf4reader::Reader reader;
    QVERIFY(reader.openBytes(memory.bytes));
    QCOMPARE(reader.file().version, 410U);
    QCOMPARE(reader.file().groups.size(), std::size_t{0});
}

void tst_MDF4File::startTimeStandsInTheHeader()
{
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.Create(u"f"));
    QVERIFY(file.setStartTime(anyTime_ns));
    QVERIFY(file.close());
    mdf4reader::Reader reader;
    QVERIFY(reader.openBytes(memory.bytes));
    QCOMPARE(reader.file().startTime_ns, std::uint64_t{anyTime_ns});
}

void tst_MDF4File::commentsAreRead()
{
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    writeSample(file);
    QVERIFY(!file.failed());
    mdf4reader::Reader reader;
    QVERIFY(reader.openBytes(memory.bytes));
    QCOMPARE(reader.file().fileHistories, 1U);
    QCOMPARE(reader.file().fileHistoryTime_ns, std::uint64_t{anyTime_ns});
    QCOMPARE(reader.file().fileHistoryComment,
             mdf4::fileHistoryComment({"tool", "vendor", "2.19"}));
    QCOMPARE(reader.file().headerComment, mdf4::headerComment({"comment", "a", "b", "c", "d"}));
}

void tst_MDF4File::secondCommentDoesNotReplaceTheFirst()
{
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.Create(u"f"));
    QVERIFY(file.setComment("<HDcomment>first</HDcomment>"));
    const std::uint64_t end = file.logicalEnd();
    QVERIFY(!file.setComment("<HDcomment>second</HDcomment>"));
    QCOMPARE(file.logicalEnd(), end);
    QVERIFY(file.close());
    mdf4reader::Reader reader;
    QVERIFY(reader.openBytes(memory.bytes));
    QCOMPARE(reader.file().headerComment, std::string("<HDcomment>first</HDcomment>"));
}

void tst_MDF4File::groupsAndChannelsAreReadInOrder()
{
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    writeSample(file);
    mdf4reader::Reader reader;
    QVERIFY2(reader.openBytes(memory.bytes), reader.error().c_str());
    const auto &groups = reader.file().groups;
    QCOMPARE(groups.size(), std::size_t{2});
    QCOMPARE(groups[0].channels.size(), std::size_t{2});
    QCOMPARE(groups[0].channels[0].name, std::string("Timestamp"));
    QCOMPARE(groups[0].channels[1].name, std::string("Speed"));
    QCOMPARE(groups[0].channels[1].unit, std::string("km/h"));
    QCOMPARE(groups[1].channels[1].name, std::string("Torque"));
}

void tst_MDF4File::attachmentAndEventChainsStartAtTheHeader()
{
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.Create(u"f"));
    const std::uint64_t at = file.addAT(std::make_unique<M4ATBlock>())->position();
    const std::uint64_t nextAt = file.addAT(std::make_unique<M4ATBlock>())->position();
    const std::uint64_t ev = file.addEV(std::make_unique<M4EVBlock>())->position();
    QVERIFY(file.close());
    const auto linkOf = [&memory](std::uint64_t block, unsigned link) {
        return qFromLittleEndian<quint64>(memory.bytes.data() + block + 24 + 8 * link);
    };
    QCOMPARE(linkOf(64, 3), quint64{at});
    QCOMPARE(linkOf(at, 0), quint64{nextAt});
    QCOMPARE(linkOf(64, 4), quint64{ev});
}

void tst_MDF4File::cycleCountIsPatched()
{
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    writeSample(file);
    mdf4reader::Reader reader;
    QVERIFY(reader.openBytes(memory.bytes));
    for (const mdf4reader::Group &group : reader.file().groups) {
        QCOMPARE(group.cycleCount, std::uint64_t{100});
        QCOMPARE(reader.records(group).size(), std::size_t{1200});
    }
}

void tst_MDF4File::cycleCountOfZeroIsNotPatched()
{
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.Create(u"f"));
    M4DGBlock *dg = nullptr;
    M4CGBlock *cg = addGroup(file, dg, "a");
    file.noteCycleCount(*cg);
    QVERIFY(cg->setCycleCount(7)); // what was noted counts from 0 and stays there
    QVERIFY(file.patchCycleCounts());
    QVERIFY(file.close());
    mdf4reader::Reader reader;
    QVERIFY(reader.openBytes(memory.bytes));
    QCOMPARE(reader.file().groups[0].cycleCount, std::uint64_t{7});
}

void tst_MDF4File::onlyTheLastGroupOfARecordIdIsPatched()
{
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.Create(u"f"));
    M4DGBlock *dg = nullptr;
    for (const unsigned count : {3U, 5U}) {
        const M4CGBlock *cg = addGroup(file, dg, "a");
        file.noteCycleCount(*cg);
        file.addCycles(1, count);
        QVERIFY(file.patchCycleCounts());
    }
    QVERIFY(file.close());
    mdf4reader::Reader reader;
    QVERIFY(reader.openBytes(memory.bytes));
    QCOMPARE(reader.file().groups[0].cycleCount, std::uint64_t{3});
    QCOMPARE(reader.file().groups[1].cycleCount, std::uint64_t{5});
}

void tst_MDF4File::emptyPathFails()
{
    MDF4File file;
    QVERIFY(!file.Create(u""));
    QCOMPARE(file.lastError(), std::string("no file name given"));
}

void tst_MDF4File::pathThatIsNotUnicodeFails()
{
#ifdef _WIN32
    QSKIP("file names are any 16-bit values here");
#else
    const std::u16string loneSurrogate(1, char16_t{0xD800});
    MDF4File file;
    QVERIFY(!file.Create(loneSurrogate));
    QCOMPARE(file.lastError(), std::string("the file name is not valid Unicode"));
#endif
}

void tst_MDF4File::pathWithOtherLettersIsUsedAsItIs()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QString::fromUtf8("Prüfung 東 [1].mf4.part"));
    MDF4File file;
    QVERIFY(file.Create(path.toStdU16String()));
    QVERIFY(file.close());
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{QFileInfo(path).fileName()});
}

void tst_MDF4File::createThatCannotWriteLeavesNothing()
{
    MemoryFile memory;
    memory.limit = 10;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(!file.Create(u"f"));
    QVERIFY(!file.isOpen());
    QCOMPARE(file.lastError(), std::string("cannot write the file: device full"));
}

void tst_MDF4File::useAfterAFailedCreateOnlyFails()
{
    MDF4File file;
    QVERIFY(!file.Create(u""));
    QVERIFY(!file.setStartTime(1));
    QVERIFY(!file.setComment("<HDcomment/>"));
    QVERIFY(file.addDG() == nullptr);
    QVERIFY(file.addCG(nullptr, 1, 12) == nullptr);
    QVERIFY(!file.close());
    QCOMPARE(file.lastError(), std::string("no file name given"));
}

void tst_MDF4File::destructorClosesTheFile()
{
    MemoryFile memory;
    {
        MDF4File file(std::make_unique<MemoryDevice>(memory));
        QVERIFY(file.Create(u"f"));
        QVERIFY(file.addFH(1, "<FHcomment/>") != nullptr);
    }
    mdf4reader::Reader reader;
    QVERIFY(reader.openBytes(memory.bytes));
    QCOMPARE(reader.file().fileHistories, 1U);
}

void tst_MDF4File::deviceFullAtAnyByteIsReported()
{
    MemoryFile whole;
    MDF4File reference(std::make_unique<MemoryDevice>(whole));
    writeSample(reference);
    QVERIFY(!reference.failed());
    for (std::size_t limit = 0; limit < whole.bytes.size(); ++limit) {
        MemoryFile memory;
        memory.limit = limit;
        MDF4File file(std::make_unique<MemoryDevice>(memory));
        writeSample(file);
        QVERIFY2(file.failed(), qPrintable(QString::number(limit)));
        QCOMPARE(file.lastError(), std::string("cannot write the file: device full"));
    }
}

void tst_MDF4File::manyGroupsTakeFewWrites()
{
    MemoryFile memory;
    MDF4File file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.Create(u"f"));
    constexpr unsigned count = 1600;
    for (unsigned i = 0; i < count; ++i) {
        M4DGBlock *dg = nullptr;
        const M4CGBlock *cg = addGroup(file, dg, "signal " + std::to_string(i));
        QVERIFY(cg != nullptr);
        writeRecords(file, dg, *cg, 2);
    }
    QVERIFY(file.close());
    QVERIFY2(memory.writes < 4 * count, "blocks are gathered before they are written");
    mdf4reader::Reader reader;
    QVERIFY(reader.openBytes(memory.bytes));
    QCOMPARE(reader.file().groups.size(), std::size_t{count});
    QCOMPARE(reader.file().groups.back().channels[1].name, std::string("signal 1599"));
}

QTEST_GUILESS_MAIN(tst_MDF4File)
#include "tst_mdf4file.moc"
