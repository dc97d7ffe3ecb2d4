#include "support/testenvironment.h"

#include "effects/options/optionsparser.h"
#include "effects/options/optionsresult.h"
#include "effects/options/optionsscanner.h"

class TestOptionsParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyTextGivesDefaults_data();
    void emptyTextGivesDefaults();
    void scannerKnowsOnlyItsOwnWords();
    void optionValues_data();
    void optionValues();
    void laterOptionWins();
    void messageTableFollowsTokenKinds();
    void errorsAtTheirPlace_data();
    void errorsAtTheirPlace();
    void missingEqualsStillTakesTheValue();
    void parserAndCompileAgree();
};

namespace {

QString errorLine(int line, int col, const QString& message)
{
    return QStringLiteral("-- line %1 col %2: %3").arg(line).arg(col).arg(message);
}

// The literal tokens in the order of their kinds, from 4 on.
const QStringList& literals()
{
    static const QStringList list =
        QStringLiteral("; min filter = mag wraps wrapt nearest linear nearestmipmapnearest "
                       "nearestmipmaplinear linearmipmapnearest "
                       "linearmipmaplinear repeat mirroredrepeat clamptoedge clamptoborder mirrorclamptoedge")
            .split(QLatin1Char(' '));
    return list;
}

} // namespace

void TestOptionsParser::emptyTextGivesDefaults_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("blank") << " \t\r\n";
    QTest::newRow("comments") << "// min filter = nearest;\n/* wraps = repeat; /* nested */ */";
    QTest::newRow("byte-order mark") << QString::fromLatin1("\xEF\xBB\xBF");
}

void TestOptionsParser::emptyTextGivesDefaults()
{
    QFETCH(QString, text);
    const options::Result result = options::compile(text);
    QVERIFY(result.ok());
    QVERIFY(result.errors.isEmpty());
    QCOMPARE(result.minFilter, 5);
    QCOMPARE(result.magFilter, 1);
    QCOMPARE(result.wrapS, 2);
    QCOMPARE(result.wrapT, 2);
}

void TestOptionsParser::scannerKnowsOnlyItsOwnWords()
{
    // Words of the other language are identifiers here, its symbols unknown.
    options::Scanner scanner(QStringLiteral("MinFilter min FILTER = ; texture int ( 1.5 'x' wrapT"));
    const QVector<QPair<int, QString>> expected{
        {options::IdentSym, "MinFilter"}, {options::MinSym, "min"},     {options::FilterSym, "FILTER"},
        {options::EqualsSym, "="},        {options::SemicolonSym, ";"}, {options::IdentSym, "texture"},
        {options::IdentSym, "int"},       {options::NoSym, "("},        {options::NumberSym, "1.5"},
        {options::StringSym, "'x'"},      {options::WrapTSym, "wrapT"}, {options::EofSym, ""}};
    for (const auto& token : expected) {
        const options::Token read = scanner.scan();
        QCOMPARE(read.kind, token.first);
        QCOMPARE(read.val, token.second);
    }
}

void TestOptionsParser::optionValues_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVector<int>>("values"); // min filter, mag filter, wrap s, wrap t
    for (int value = 0; value < 6; ++value) {
        const QString name = literals().at(value + 7);
        QTest::addRow("min %d", value)
            << QStringLiteral("min filter = %1;").arg(name) << QVector<int>{value, 1, 2, 2};
        QTest::addRow("MAG %d", value)
            << QStringLiteral("MAG Filter=%1 ;").arg(name.toUpper()) << QVector<int>{5, value, 2, 2};
    }
    for (int value = 0; value < 5; ++value) {
        const QString name = literals().at(value + 13);
        QTest::addRow("wraps %d", value)
            << QStringLiteral("wraps = %1;").arg(name) << QVector<int>{5, 1, value, 2};
        QTest::addRow("WRAPT %d", value)
            << QStringLiteral("WrapT =\n%1\n;").arg(name.toUpper()) << QVector<int>{5, 1, 2, value};
    }
}

void TestOptionsParser::optionValues()
{
    QFETCH(QString, text);
    QFETCH(QVector<int>, values);
    const options::Result result = options::compile(text);
    QVERIFY(result.ok());
    QCOMPARE((QVector<int>{result.minFilter, result.magFilter, result.wrapS, result.wrapT}), values);
}

void TestOptionsParser::laterOptionWins()
{
    const options::Result result =
        options::compile(QStringLiteral("min filter = nearest;\n"
                                        "wraps = repeat; wrapt = clamptoborder;\n"
                                        "/* comment */ min filter = linear; // the last min filter\r"
                                        "wraps = mirrorclamptoedge; mag filter = nearest;"));
    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));
    QCOMPARE(result.minFilter, 1);
    QCOMPARE(result.magFilter, 0);
    QCOMPARE(result.wrapS, 4);
    QCOMPARE(result.wrapT, 3);
}

void TestOptionsParser::messageTableFollowsTokenKinds()
{
    options::Errors errors;
    QCOMPARE(errors.message(0), QStringLiteral("EOF expected"));
    QCOMPARE(errors.message(1), QStringLiteral("ident expected"));
    QCOMPARE(errors.message(2), QStringLiteral("number expected"));
    QCOMPARE(errors.message(3), QStringLiteral("string expected"));
    QCOMPARE(literals().size(), 18);
    for (int kind = 4; kind <= 21; ++kind) {
        QCOMPARE(errors.message(kind), QStringLiteral("\"%1\" expected").arg(literals().at(kind - 4)));
        QCOMPARE(options::Scanner::literals().get(literals().at(kind - 4), -1), kind);
    }
    QCOMPARE(errors.message(22), QStringLiteral("??? expected"));
    QCOMPARE(errors.message(23), QStringLiteral("invalid TextureOptions"));
    QCOMPARE(errors.message(24), QStringLiteral("invalid WrapModeOption"));
    QCOMPARE(errors.message(25), QStringLiteral("invalid Filter"));
    QCOMPARE(errors.message(26), QStringLiteral("invalid WrapMode"));
    QCOMPARE(errors.message(27), QStringLiteral("error 27"));
    QCOMPARE(options::Scanner::literals().get(QStringLiteral("texture"), -1), -1);
}

void TestOptionsParser::errorsAtTheirPlace_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("EOF") << "min filter = linear; wraps = repeat; )"
                         << QStringList{errorLine(1, 38, "EOF expected")};
    QTest::newRow("other language") << "texture t 'f';" << QStringList{errorLine(1, 1, "EOF expected")};
    QTest::newRow("no symbol") << "\n  (" << QStringList{errorLine(2, 3, "EOF expected")};
    QTest::newRow("filter") << "min = nearest;" << QStringList{errorLine(1, 5, "\"filter\" expected")};
    QTest::newRow("equals") << "wrapt mirroredrepeat;" << QStringList{errorLine(1, 7, "\"=\" expected")};
    QTest::newRow("semicolon") << "min filter = linear" << QStringList{errorLine(1, 20, "\";\" expected")};
    QTest::newRow("invalid Filter") << "mag filter = repeat;"
                                    << QStringList{errorLine(1, 14, "invalid Filter")};
    QTest::newRow("invalid WrapMode")
        << "wraps = nearest;" << QStringList{errorLine(1, 9, "invalid WrapMode")};
    QTest::newRow("number dot") << "wraps = 5.;" << QStringList{errorLine(1, 9, "invalid WrapMode")};
    QTest::newRow("line ends") << "min filter = linear;\r\nmag filter = linear;\rwraps = ;"
                               << QStringList{errorLine(3, 9, "invalid WrapMode")};
    // One mistake, reported once though the tokens after it fit nothing.
    QTest::newRow("recovery hides") << "min min filter = linear;"
                                    << QStringList{errorLine(1, 5, "\"filter\" expected")};
    // Read one token after a report, the next mismatch is still too close.
    QTest::newRow("recovery one token on")
        << "min filter nearest linear;" << QStringList{errorLine(1, 12, "\"=\" expected")};
    QTest::newRow("recovery reports again")
        << "min filter = nearest mag filter = linear"
        << QStringList{errorLine(1, 22, "\";\" expected"), errorLine(1, 41, "\";\" expected")};
}

void TestOptionsParser::errorsAtTheirPlace()
{
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    const options::Result result = options::compile(text);
    QCOMPARE(result.errors, expected);
    QCOMPARE(result.errorCount, expected.size());
}

void TestOptionsParser::missingEqualsStillTakesTheValue()
{
    // The parser goes on at the same token, so the filter is read after the report.
    const options::Result result = options::compile(QStringLiteral("min filter nearest;"));
    QCOMPARE(result.errors, QStringList{errorLine(1, 12, QStringLiteral("\"=\" expected"))});
    QCOMPARE(result.minFilter, 0);
}

void TestOptionsParser::parserAndCompileAgree()
{
    const QString text = QStringLiteral("wrapt = repeat; mag filter = nearestmipmaplinear; wraps 1;");
    options::Scanner scanner(text);
    options::Parser parser(scanner);
    parser.parse();
    const options::Result result = options::compile(text);
    QCOMPARE(parser.errors().count(), 1);
    QCOMPARE(parser.errors().lines(), result.errors);
    QCOMPARE(result.errors, QStringList{errorLine(1, 57, QStringLiteral("\"=\" expected"))});
    QCOMPARE(parser.wrapT(), 0);
    QCOMPARE(parser.magFilter(), 3);
    QCOMPARE(parser.wrapS(), 2);
    QCOMPARE(result.wrapT, parser.wrapT());
    QCOMPARE(result.magFilter, parser.magFilter());
}

QUILLMERE_TEST_MAIN(TestOptionsParser)
#include "tst_optionsparser.moc"
