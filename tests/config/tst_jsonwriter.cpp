#include "config/record/jsonwriter.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <functional>
#include <limits>

class tst_JsonWriter : public QObject
{
    Q_OBJECT

private slots:
    void keysKeepTheirOrder();
    void emptyObjectsAndArraysAreClosed();
    void aWholeValueIsWrittenLikeItsPieces();
    void textsAreEscaped();
    void numbersThatJsonLacksAreNull();
    void everythingReadsBack();
};

namespace {

QByteArray written(const std::function<void(JsonWriter &)> &write)
{
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    JsonWriter json(out);
    write(json);
    return out.data();
}

} // namespace

void tst_JsonWriter::keysKeepTheirOrder()
{
    QCOMPARE(written([](JsonWriter &json) {
                 json.beginObject();
                 json.value(QStringLiteral("z"), 1);
                 json.value(QStringLiteral("a"), true);
                 json.end();
             }),
             QByteArray("{\n    \"z\": 1,\n    \"a\": true\n}\n"));
}

void tst_JsonWriter::emptyObjectsAndArraysAreClosed()
{
    QCOMPARE(written([](JsonWriter &json) {
                 json.beginArray();
                 json.beginObject();
                 json.end();
                 json.beginArray();
                 json.end();
                 json.end();
             }),
             QByteArray("[\n    {},\n    []\n]\n"));
}

void tst_JsonWriter::aWholeValueIsWrittenLikeItsPieces()
{
    const auto pieces = written([](JsonWriter &json) {
        json.beginObject();
        json.key(QStringLiteral("list"));
        json.beginArray();
        json.value(1);
        json.value(QStringLiteral("two"));
        json.end();
        json.end();
    });
    QCOMPARE(
        written([](JsonWriter &json) {
            json.value(QJsonObject{{QStringLiteral("list"), QJsonArray{1, QStringLiteral("two")}}});
        }),
        pieces);
}

void tst_JsonWriter::textsAreEscaped()
{
    QCOMPARE(written([](JsonWriter &json) {
                 json.beginObject();
                 json.value(QStringLiteral("a\"\n"), QStringLiteral("\\\x1b\u00e4"));
                 json.end();
             }),
             QByteArray("{\n    \"a\\\"\\n\": \"\\\\\\u001b\u00e4\"\n}\n"));
}

void tst_JsonWriter::numbersThatJsonLacksAreNull()
{
    QCOMPARE(written([](JsonWriter &json) {
                 json.beginArray();
                 json.value(std::numeric_limits<double>::infinity());
                 json.value(std::numeric_limits<double>::quiet_NaN());
                 json.end();
             }),
             QByteArray("[\n    null,\n    null\n]\n"));
}

void tst_JsonWriter::everythingReadsBack()
{
    const QJsonObject object{
        {QStringLiteral("null"), QJsonValue()},
        {QStringLiteral("nested"),
         QJsonArray{QJsonArray{}, QJsonObject{{QStringLiteral("deep"), QJsonArray{1.5, -3}}}}},
        {QStringLiteral("large"), 9007199254740991.0}};
    const QByteArray text = written([&object](JsonWriter &json) { json.value(object); });
    QCOMPARE(QJsonDocument::fromJson(text).object(), object);
}

QTEST_GUILESS_MAIN(tst_JsonWriter)
#include "tst_jsonwriter.moc"
