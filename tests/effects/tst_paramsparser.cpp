#include "support/testenvironment.h"

#include "effects/mfield.h"
#include "effects/mtexture.h"
#include "effects/params/paramsparser.h"
#include "effects/params/paramsresult.h"
#include "effects/params/paramsscanner.h"

#include <QColor>

class TestParamsParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keywordsInAnyCase_data();
    void keywordsInAnyCase();
    void tokens_data();
    void tokens();
    void latin1Text();
    void utf8AfterByteOrderMark();
    void bufferReadsAndGuardsItsBounds();
    void utf8BufferDecodes();
    void messageTableFollowsTokenKinds();
    void errorsAtTheirPlace_data();
    void errorsAtTheirPlace();
    void fieldsTakeTypeNameAndDefaults();
    void numberDefaultsByKind();
    void colourDefaults();
    void infoSetsLabelRangeStepAndPicks();
    void texturesTakeNameFileAndOptions();
    void fifthTextureIsRefusedAndParsingGoesOn();
    void editorSamplesParseCleanly();
    void declarationsChangeOwner();
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
        QStringLiteral(
            "; texture min filter = mag wraps wrapt nearest linear nearestmipmapnearest nearestmipmaplinear "
            "linearmipmapnearest linearmipmaplinear repeat mirroredrepeat clamptoedge clamptoborder "
            "mirrorclamptoedge "
            "int bool float color enum true false rgb ( , ) max increment values")
            .split(QLatin1Char(' '));
    return list;
}

// A token as "kind text line:col"; a literal token's kind is its literal.
QString tok(int kind, const QString& text, int line, int col)
{
    static const QStringList named = {"end", "ident", "number", "string"};
    QString name = kind == params::NoSym ? QStringLiteral("none") : QString::number(kind);
    if (kind >= 0 && kind < 4)
        name = named.at(kind);
    else if (kind >= 4 && kind - 4 < literals().size())
        name = literals().at(kind - 4);
    return QStringLiteral("%1 %2 %3:%4").arg(name, text).arg(line).arg(col);
}

// Every token up to the end, the end itself left out.
QStringList scanAll(const QString& text)
{
    params::Scanner scanner(text);
    QStringList tokens;
    // Each token takes at least one character, so more would mean a scanner stuck.
    for (int i = 0; i <= text.size() + 1; ++i) {
        const params::Token token = scanner.scan();
        if (token.kind == params::EofSym)
            return tokens;
        tokens << tok(token.kind, token.val, token.line, token.col);
    }
    tokens << QStringLiteral("no end");
    return tokens;
}

QString mixedCase(const QString& word)
{
    QString mixed = word;
    for (int i = 0; i < mixed.size(); i += 2)
        mixed[i] = mixed.at(i).toUpper();
    return mixed;
}

} // namespace

void TestParamsParser::keywordsInAnyCase_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("kind");
    for (int i = 0; i < literals().size(); ++i) {
        const QString& word = literals().at(i);
        if (!word.at(0).isLetter())
            continue;
        QTest::addRow("%s", qPrintable(word)) << word << i + 4;
        QTest::addRow("%s upper", qPrintable(word)) << word.toUpper() << i + 4;
        QTest::addRow("%s mixed", qPrintable(word)) << mixedCase(word) << i + 4;
    }
}

void TestParamsParser::keywordsInAnyCase()
{
    QFETCH(QString, text);
    QFETCH(int, kind);
    // The token keeps the spelling as written; a longer word is an identifier.
    QCOMPARE(scanAll(text), QStringList{tok(kind, text, 1, 1)});
    QCOMPARE(scanAll(text + QLatin1Char('_')),
             QStringList{tok(params::IdentSym, text + QLatin1Char('_'), 1, 1)});
}

void TestParamsParser::tokens_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("ident") << "_a1 Ab_9 texture2"
                           << QStringList{"ident _a1 1:1", "ident Ab_9 1:5", "ident texture2 1:10"};
    QTest::newRow("digits then letters") << "2abc" << QStringList{"number 2 1:1", "ident abc 1:2"};
    QTest::newRow("numbers") << "0 007 +5 -0.25 12.5"
                             << QStringList{"number 0 1:1", "number 007 1:3", "number +5 1:7",
                                            "number -0.25 1:10", "number 12.5 1:16"};
    QTest::newRow("dot after digits") << "5. x" << QStringList{"number 5 1:1", "none . 1:2", "ident x 1:4"};
    QTest::newRow("dot then letter") << "-15.x" << QStringList{"number -15 1:1", "none . 1:4", "ident x 1:5"};
    QTest::newRow("dot before digits") << ".5" << QStringList{"none . 1:1", "number 5 1:2"};
    QTest::newRow("two dots") << "1.2.3" << QStringList{"number 1.2 1:1", "none . 1:4", "number 3 1:5"};
    QTest::newRow("lone signs") << "+ -x +.5" << QStringList{"none + 1:1", "none - 1:3", "ident x 1:4",
                                                             "none + 1:6", "none . 1:7", "number 5 1:8"};
    QTest::newRow("strings") << "\"a b\" 'it\"s' \"\""
                             << QStringList{"string \"a b\" 1:1", "string 'it\"s' 1:7", "string \"\" 1:14"};
    QTest::newRow("string keeps comment marks") << "\"/* // \"" << QStringList{"string \"/* // \" 1:1"};
    QTest::newRow("unclosed string") << "\"abc" << QStringList{"none \"abc 1:1"};
    QTest::newRow("string cut by line end")
        << "'ab\ncd'" << QStringList{"none 'ab 1:1", "ident cd 2:1", "none ' 2:3"};
    QTest::newRow("string cut by return")
        << "\"ab\rc\"" << QStringList{"none \"ab 1:1", "ident c 2:1", "none \" 2:2"};
    QTest::newRow("punctuation") << ";=(,)"
                                 << QStringList{"; ; 1:1", "= = 1:2", "( ( 1:3", ", , 1:4", ") ) 1:5"};
    QTest::newRow("unknown characters")
        << "{#/*" + QString(QChar(0)) + QChar(0xE9) << QStringList{"none { 1:1", "none # 1:2"};
    QTest::newRow("slash alone") << "a/b *"
                                 << QStringList{"ident a 1:1", "none / 1:2", "ident b 1:3", "none * 1:5"};
    QTest::newRow("nul and latin-1 letter")
        << QString(QChar(0)) + QStringLiteral(" ") + QChar(0xE9)
        << QStringList{QStringLiteral("none %1 1:1").arg(QString(QChar(0))),
                       QStringLiteral("none %1 1:3").arg(QString(QChar(0xE9)))};
    QTest::newRow("nested comment") << "/* a /* b */ c */int" << QStringList{"int int 1:18"};
    QTest::newRow("comment closing at once")
        << "/**/x /*/ y */z" << QStringList{"ident x 1:5", "ident z 1:15"};
    QTest::newRow("line comment") << "a // b c\nd" << QStringList{"ident a 1:1", "ident d 2:1"};
    QTest::newRow("line comment at end") << "a // b" << QStringList{"ident a 1:1"};
    QTest::newRow("unclosed block comment ends the text") << "a /* b /* c */ d" << QStringList{"ident a 1:1"};
    QTest::newRow("block comment over lines") << "/*\n\n*/ x" << QStringList{"ident x 3:4"};
    QTest::newRow("line comment inside block") << "/* // */ x" << QStringList{"ident x 1:10"};
    // Positions across line ends and tabs.
    QTest::newRow("line feed") << "a\nb" << QStringList{"ident a 1:1", "ident b 2:1"};
    QTest::newRow("return alone") << "a\rb" << QStringList{"ident a 1:1", "ident b 2:1"};
    QTest::newRow("return line feed") << "a\r\nb" << QStringList{"ident a 1:1", "ident b 2:1"};
    QTest::newRow("line feed return") << "a\n\rb" << QStringList{"ident a 1:1", "ident b 3:1"};
    QTest::newRow("two returns") << "a\r\r\nb" << QStringList{"ident a 1:1", "ident b 3:1"};
    QTest::newRow("tab is one column") << "\ta\t b" << QStringList{"ident a 1:2", "ident b 1:5"};
    QTest::newRow("columns restart") << "ab cd\n  ef"
                                     << QStringList{"ident ab 1:1", "ident cd 1:4", "ident ef 2:3"};
}

void TestParamsParser::tokens()
{
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    QCOMPARE(scanAll(text), expected);
}

void TestParamsParser::latin1Text()
{
    // Characters of Latin-1 survive into labels; others do not.
    params::Result result = params::compile(QStringLiteral("float a \"caf\u00e9 \u00ff\u20ac\";"));
    QVERIFY(result.ok());
    QCOMPARE(result.fields.at(0)->label, QStringLiteral("caf\u00e9 \u00ff?"));

    // Outside strings they are no symbol.
    result = params::compile(QStringLiteral("float \u00e9;"));
    QCOMPARE(result.errors, QStringList{errorLine(1, 7, QStringLiteral("ident expected"))});

    // An empty text and a blank one have nothing to report.
    for (const QString& text :
         {QString(), QStringLiteral(" "), QStringLiteral("\n\n"), QStringLiteral("// x")}) {
        result = params::compile(text);
        QVERIFY(result.ok());
        QVERIFY(result.fields.empty());
        QVERIFY(result.textures.empty());
    }
    // The end of an empty text lies behind the blank that stands in for it.
    params::Scanner scanner{QString()};
    const params::Token end = scanner.scan();
    QCOMPARE(end.kind, int(params::EofSym));
    QCOMPARE(end.col, 2);
    // The end stays the end.
    QCOMPARE(scanner.scan().kind, int(params::EofSym));
}

void TestParamsParser::utf8AfterByteOrderMark()
{
    const QByteArray bom("\xEF\xBB\xBF");
    // The same bytes, once with and once without the mark: with it, the label is
    // decoded and columns count characters, not bytes.
    const QByteArray body("float a \"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\" 5;");
    params::Result result = params::compile(QString::fromLatin1(bom + body));
    QCOMPARE(result.errors, QStringList{errorLine(1, 15, QStringLiteral("\";\" expected"))});
    QCOMPARE(result.fields.at(0)->label,
             QStringLiteral("\u00e9\u20ac") + QString::fromUcs4(U"\U0001F600", 1));

    result = params::compile(QString::fromLatin1(body));
    QCOMPARE(result.errors, QStringList{errorLine(1, 21, QStringLiteral("\";\" expected"))});
    QCOMPARE(result.fields.at(0)->label, QString::fromLatin1("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"));

    // The first token after the mark is in column 1.
    result = params::compile(QString::fromLatin1(bom + "5"));
    QCOMPARE(result.errors, QStringList{errorLine(1, 1, QStringLiteral("EOF expected"))});

    // A mark alone is an empty section.
    result = params::compile(QString::fromLatin1(bom));
    QVERIFY(result.ok());
    QVERIFY(result.fields.empty());

    // Only the whole mark switches: two of its bytes are two unknown characters.
    result = params::compile(QString::fromLatin1("\xEF\xBB"
                                                 "float a;"));
    QCOMPARE(result.errors, QStringList{errorLine(1, 1, QStringLiteral("EOF expected"))});

    // A sequence cut short by the end of the text leaves a label-less string.
    result = params::compile(QString::fromLatin1(bom + "float a \"\xE2\x82"));
    QCOMPARE(result.errorCount, 1);
    QCOMPARE(result.errors, QStringList{errorLine(1, 9, QStringLiteral("\";\" expected"))});
}

void TestParamsParser::bufferReadsAndGuardsItsBounds()
{
    params::Buffer buffer(QByteArrayLiteral("a\xFF"));
    QCOMPARE(buffer.length(), 2);
    QCOMPARE(buffer.peek(), int('a'));
    QCOMPARE(buffer.pos(), 0);
    QCOMPARE(buffer.read(), int('a'));
    QCOMPARE(buffer.read(), 0xFF);
    QCOMPARE(buffer.read(), params::Buffer::EoF);
    QCOMPARE(buffer.read(), params::Buffer::EoF);
    QCOMPARE(buffer.pos(), 2);

    buffer.setPos(1);
    QCOMPARE(buffer.read(), 0xFF);
    QTest::ignoreMessage(QtWarningMsg, "--- buffer out of bounds access, position: 3");
    buffer.setPos(3);
    QCOMPARE(buffer.pos(), 2);
    QTest::ignoreMessage(QtWarningMsg, "--- buffer out of bounds access, position: -1");
    buffer.setPos(-1);
    QCOMPARE(buffer.pos(), 0);
    QCOMPARE(buffer.read(), int('a'));
}

void TestParamsParser::utf8BufferDecodes()
{
    // One to four bytes per character; stray continuation bytes are passed over.
    params::UTF8Buffer buffer(QByteArray("\xEF\xBB\xBF"
                                         "a\xC3\xA9\x80\xE2\x82\xAC\xF0\x9F\x98\x80"),
                              3);
    QCOMPARE(buffer.read(), int('a'));
    QCOMPARE(buffer.peek(), 0xE9);
    QCOMPARE(buffer.read(), 0xE9);
    QCOMPARE(buffer.read(), 0x20AC);
    QCOMPARE(buffer.read(), 0x1F600);
    QCOMPARE(buffer.read(), params::Buffer::EoF);

    // Cut short: the missing bytes count as zero bits.
    params::UTF8Buffer cut(QByteArray("\xE2\x82"), 0);
    QCOMPARE(cut.read(), 0x2080);
    QCOMPARE(cut.read(), params::Buffer::EoF);
}

void TestParamsParser::messageTableFollowsTokenKinds()
{
    params::Errors errors;
    const QStringList before = {"EOF expected", "ident expected", "number expected", "string expected"};
    for (int kind = 0; kind < 4; ++kind)
        QCOMPARE(errors.message(kind), before.at(kind));
    // Each literal token's message names the literal the scanner reads as that kind.
    QCOMPARE(literals().size(), 33);
    for (int kind = 4; kind <= 36; ++kind) {
        QCOMPARE(errors.message(kind), QStringLiteral("\"%1\" expected").arg(literals().at(kind - 4)));
        QCOMPARE(params::Scanner::literals().get(literals().at(kind - 4), -1), kind);
    }
    const QStringList after = {"??? expected",       "invalid TextureOptions", "invalid WrapModeOption",
                               "invalid Filter",     "invalid WrapMode",       "invalid VarType",
                               "invalid Expression", "invalid Info",           "error 45"};
    for (int kind = 37; kind <= 45; ++kind)
        QCOMPARE(errors.message(kind), after.at(kind - 37));
    QCOMPARE(errors.message(-1), QStringLiteral("error -1"));

    QCOMPARE(errors.count(), 0);
    errors.synErr(3, 7, 40);
    errors.error(1, 2, QStringLiteral("Invalid number"));
    QCOMPARE(errors.count(), 2);
    QCOMPARE(errors.lines(), (QStringList{QStringLiteral("-- line 3 col 7: invalid Filter"),
                                          QStringLiteral("-- line 1 col 2: Invalid number")}));
}

void TestParamsParser::errorsAtTheirPlace_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    // A row whose errors are written "line:col message".
    const auto row = [](const char* name, const QString& text, const QStringList& errors) {
        QStringList expected;
        for (const QString& error : errors) {
            const int colon = error.indexOf(QLatin1Char(':'));
            const int space = error.indexOf(QLatin1Char(' '));
            expected << errorLine(error.left(colon).toInt(), error.mid(colon + 1, space - colon - 1).toInt(),
                                  error.mid(space + 1));
        }
        QTest::newRow(name) << text << expected;
    };
    const QString fourTextures =
        QStringLiteral("texture a \"a\";\ntexture b \"b\";\ntexture c \"c\";\ntexture d \"d\";\n");

    row("EOF", "int a; )", {"1:8 EOF expected"});
    row("ident", "int 5;", {"1:5 ident expected"});
    row("texture ident", "texture \"f\";", {"1:9 ident expected"});
    row("number", "float a max = ;", {"1:15 number expected", "1:15 Invalid number"});
    row("string", "texture t;", {"1:10 string expected"});
    row("enum string", "enum e = 1 enum values = 1;", {"1:27 string expected"});
    row("semicolon", "int a", {"1:6 \";\" expected"});
    row("filter", "texture t \"f\" min = nearest;", {"1:19 \"filter\" expected"});
    row("mag filter", "texture t \"f\" mag linear;", {"1:19 \"filter\" expected"});
    row("equals", "float a max 1;", {"1:13 \"=\" expected"});
    row("left paren", "color c = rgb 1, 2, 3);", {"1:15 \"(\" expected"});
    row("comma", "color c = rgb(1 2, 3);", {"1:17 \",\" expected"});
    row("right paren", "color c = rgb(1, 2, 3;", {"1:22 \")\" expected"});
    row("values", "float a enum = 1 \"x\";", {"1:14 \"values\" expected"});
    row("invalid Filter", "texture t \"f\" min filter = repeat;", {"1:28 invalid Filter"});
    row("invalid WrapMode", "texture t \"f\" wraps = linear;", {"1:23 invalid WrapMode"});
    row("invalid Expression", "int a = ;", {"1:9 invalid Expression"});
    row("dot number", "float a = .5;", {"1:11 invalid Expression"});
    row("number and dot", "float a = 5.;", {"1:12 \";\" expected"});
    row("unclosed string", "float a \"abc;", {"1:9 \";\" expected"});
    // "min" starts an Info too; the number it lacks is read from the token before.
    row("keyword as name", "float min;", {"1:7 ident expected", "1:10 Invalid number"});
    row("too large", "float a = 1" + QString(400, QLatin1Char('9')) + ";", {"1:412 Invalid number"});
    row("too small", "float a = 0." + QString(400, QLatin1Char('0')) + "1;", {"1:414 Invalid number"});
    row("fifth texture", fourTextures + "  texture e \"e\";", {"5:3 You can use 4 user textures max."});
    row("sixth texture", fourTextures + "texture e \"e\"; texture f \"f\";",
        {"5:1 You can use 4 user textures max.", "5:16 You can use 4 user textures max."});
    row("on later lines", "\n\n   int a = ;", {"3:12 invalid Expression"});
    // Recovery: only syntax errors some way apart are reported.
    // After a missing ";" nothing fits any more, but it is said once.
    row("missing semicolon once", "float a 5;", {"1:9 \";\" expected"});
    row("missing semicolon before next", "float a float b;", {"1:9 \";\" expected"});
    // Every declaration that reads two tokens gets its own report.
    row("each declaration", "int a int b int c",
        {"1:7 \";\" expected", "1:13 \";\" expected", "1:18 \";\" expected"});
    row("far apart", "float a = ;\nfloat b = ;", {"1:11 invalid Expression", "2:11 invalid Expression"});
    // "int =": the missing name is reported; the expression error one token on is
    // not; the next declaration's error is.
    row("near one hidden", "int = ; int b = ;", {"1:5 ident expected", "1:17 invalid Expression"});
    // Semantic errors come whatever the distance...
    row("semantic right after syntax", "float a max = = 1;", {"1:15 number expected", "1:15 Invalid number"});
    // ...and don't hide a syntax error that follows.
    row("syntax right after semantic", "float a = 1" + QString(400, QLatin1Char('9')) + " b;",
        {"1:413 Invalid number", "1:413 \";\" expected"});
    row("after fifth texture", "texture a 'a'; texture b 'b'; texture c 'c'; texture d 'd'; texture e;",
        {"1:61 You can use 4 user textures max.", "1:70 string expected"});
}

void TestParamsParser::errorsAtTheirPlace()
{
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    const params::Result result = params::compile(text);
    QCOMPARE(result.errors, expected);
    QCOMPARE(result.errorCount, expected.size());
    QVERIFY(!result.ok());
}

void TestParamsParser::fieldsTakeTypeNameAndDefaults()
{
    const params::Result result = params::compile(
        QStringLiteral("FLOAT A;\nint Count; BOOL flag; color tint; Enum choice; float x_2;"));
    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));
    // Name, type and enumeration of each.
    QStringList fields;
    for (const auto& field : result.fields)
        fields << QStringLiteral("%1 %2 %3")
                      .arg(QString(field->name), QMetaType::typeName(field->type), QString(field->enumName))
                      .trimmed();
    QCOMPARE(fields, QStringList({"A double", "Count int", "flag bool", "tint QColor", "choice int enum",
                                  "x_2 double"}));
    QVERIFY(result.textures.empty());

    // The defaults of a declaration without Info.
    const MField& a = *result.fields.at(0);
    QCOMPARE(a.defaultValue.userType(), int(QMetaType::Double));
    QCOMPARE(a.defaultValue.toDouble(), 0.0);
    QCOMPARE(a.minimum(), 0.0);
    QCOMPARE(a.maximum(), 1.0);
    QCOMPARE(a.step, 0.1);
    QVERIFY(a.label.isEmpty() && !a.hasPickList());
}

void TestParamsParser::numberDefaultsByKind()
{
    const params::Result result = params::compile(
        QStringLiteral(
            "int a = 3.9; int b = -3.9; enum c = 2.7; float d = 0.25; float e = true; bool f = false; "
            "bool g = 1; int h = 99999999999; int i = -99999999999; float j = 1") +
        QString(60, QLatin1Char('0')) + QLatin1Char(';'));
    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));

    // Each default's type and value. A number on an int or enum is cut to an int,
    // on any other kind it is single precision; true on a float field stays a bool.
    QStringList defaults;
    for (const auto& field : result.fields)
        defaults << QStringLiteral("%1 %2").arg(field->defaultValue.typeName(),
                                                field->defaultValue.toString());
    defaults.removeLast();
    QCOMPARE(defaults, QStringList({"int 3", "int -3", "int 2", "float 0.25", "bool true", "bool false",
                                    "float 1", "int 2147483647", "int -2147483648"}));
    QCOMPARE(result.fields.at(4)->type, int(QVariant::Double));
    // Out of the range of float: its largest value.
    QCOMPARE(result.fields.at(9)->defaultValue.toFloat(), std::numeric_limits<float>::max());
}

void TestParamsParser::colourDefaults()
{
    const params::Result result = params::compile(QStringLiteral(
        "color a = rgb(255, 0, 0, 128); color b = RGB(10.9, 20, 30); color c = rgb(300, -5, 128.5, 1000);"));
    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));
    const auto colour = [&](int index) { return result.fields.at(size_t(index))->defaultValue; };
    QCOMPARE(colour(0).userType(), int(QMetaType::QColor));
    QCOMPARE(colour(0).value<QColor>(), QColor(255, 0, 0, 128));
    QCOMPARE(colour(1).value<QColor>(), QColor(10, 20, 30, 255));
    // Out of range components are clamped, keeping the colour valid.
    QVERIFY(colour(2).value<QColor>().isValid());
    QCOMPARE(colour(2).value<QColor>(), QColor(255, 0, 128, 255));
}

void TestParamsParser::infoSetsLabelRangeStepAndPicks()
{
    const params::Result result =
        params::compile(QStringLiteral("float a 'Single \"quoted\"' min = -2 max = 4.5 increment = 0.25;\n"
                                       "float b max = -1;\n"
                                       "float c min = 5;\n"
                                       "float d max = 3 min = 7 \"first\" \"Second\";\n"
                                       "enum e = 1 \"Mode\" enum values = 0 \"Off\" 1.9 'On' -3 \"\";\n"
                                       "int f enum values = 7 \"seven\" ENUM VALUES = 8 \"eight\";"));
    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));

    const MField& a = *result.fields.at(0);
    QCOMPARE(a.label, QStringLiteral("Single \"quoted\""));
    QCOMPARE(a.minimum(), -2.0);
    QCOMPARE(a.maximum(), 4.5);
    QCOMPARE(a.step, 0.25);

    // A bound that crosses the other swaps the two.
    QStringList ranges;
    for (size_t i = 1; i <= 3; ++i)
        ranges << QStringLiteral("%1 %2")
                      .arg(result.fields.at(i)->minimum())
                      .arg(result.fields.at(i)->maximum());
    QCOMPARE(ranges, QStringList({"-1 0", "1 5", "3 7"}));
    // The last label wins, spelled as written.
    QCOMPARE(result.fields.at(3)->label, QStringLiteral("Second"));

    const MField& e = *result.fields.at(4);
    QCOMPARE(e.label, QStringLiteral("Mode"));
    QCOMPARE(e.defaultValue, QVariant(1));
    QCOMPARE(e.pickList.size(), 3);
    QCOMPARE(e.pickList.at(0), (MPickItem{QStringLiteral("Off"), QVariant(0)}));
    QCOMPARE(e.pickList.at(1), (MPickItem{QStringLiteral("On"), QVariant(1)}));
    QCOMPARE(e.pickList.at(2), (MPickItem{QString(), QVariant(-3)}));
    QCOMPARE(e.pickList.at(1).value.userType(), int(QMetaType::Int));

    // Pick lists add up over several "enum values", on any field.
    const MField& f = *result.fields.at(5);
    QCOMPARE(f.pickList.size(), 2);
    QCOMPARE(f.pickList.at(1), (MPickItem{QStringLiteral("eight"), QVariant(8)}));
}

void TestParamsParser::texturesTakeNameFileAndOptions()
{
    const params::Result result = params::compile(QStringLiteral(
        "texture Plain \"$TEXTURES/paper.png\";\n"
        "float between;\n"
        "TEXTURE all 'a b.png' min filter = nearest mag filter = nearestmipmapnearest wraps = repeat wrapt = "
        "mirroredrepeat;\n"
        "texture later \"\" MIN FILTER = linear min filter = nearestmipmaplinear mag filter = "
        "linearmipmapnearest "
        "wraps = clamptoborder wrapt = mirrorclamptoedge wrapt = clamptoedge;\n"
        "texture last 'l' mag filter = linearmipmaplinear wraps = mirrorclamptoedge;"));
    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));
    QCOMPARE(int(result.fields.size()), 1);
    QCOMPARE(int(result.textures.size()), 4);

    // Name, file, then minification and magnification filters and the two wrap modes:
    // a later option wins.
    QStringList textures;
    for (const auto& texture : result.textures)
        textures << QStringLiteral("%1|%2|%3 %4 %5 %6")
                        .arg(QString(texture->name), texture->fileName)
                        .arg(texture->minFilter)
                        .arg(texture->magFilter)
                        .arg(texture->wrapS)
                        .arg(texture->wrapT);
    QCOMPARE(textures, QStringList({"Plain|$TEXTURES/paper.png|5 1 2 2", "all|a b.png|0 2 0 1",
                                    "later||3 4 3 2", "last|l|5 5 4 2"}));
}

void TestParamsParser::fifthTextureIsRefusedAndParsingGoesOn()
{
    const params::Result result =
        params::compile(QStringLiteral("texture a \"1\"; texture b \"2\"; texture c \"3\";\n"
                                       "texture d \"4\" wraps = repeat;\n"
                                       "   texture e \"5\" min filter = nearest;\n"
                                       "float after = 0.5;"));
    QCOMPARE(result.errors, QStringList{errorLine(3, 4, QStringLiteral("You can use 4 user textures max."))});
    QCOMPARE(int(result.textures.size()), 4);
    QCOMPARE(result.textures.at(3)->name, QByteArray("d"));
    QCOMPARE(result.textures.at(3)->wrapS, 0);
    // The declarations after the refused one are read all the same.
    QCOMPARE(int(result.fields.size()), 1);
    QCOMPARE(result.fields.at(0)->name, QByteArray("after"));
    QCOMPARE(result.fields.at(0)->defaultValue.toDouble(), 0.5);
}

void TestParamsParser::editorSamplesParseCleanly()
{
    const QString samples =
        QStringLiteral("float varName = 0.0 \"description\" min = 0.0 max = 1.0 increment = 0.01;\n"
                       "bool varName = false \"description\";\n"
                       "enum varName = 0 \"description\" enum values =\n"
                       "   0 \"value 0\"\n"
                       "   1 \"value 1\"\n"
                       "   2 \"value 2\";\n"
                       "color varName = rgb(255, 255, 255) \"description\";\n");
    const params::Result result = params::compile(samples);
    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));
    QVERIFY(result.errors.isEmpty());
    QCOMPARE(int(result.fields.size()), 4);
    for (const auto& field : result.fields) {
        QCOMPARE(field->name, QByteArray("varName"));
        QCOMPARE(field->label, QStringLiteral("description"));
    }
    QCOMPARE(result.fields.at(0)->step, 0.01);
    QCOMPARE(result.fields.at(0)->defaultValue.toDouble(), 0.0);
    QCOMPARE(result.fields.at(1)->defaultValue, QVariant(false));
    QCOMPARE(result.fields.at(2)->pickList.size(), 3);
    QCOMPARE(result.fields.at(2)->pickList.at(2), (MPickItem{QStringLiteral("value 2"), QVariant(2)}));
    QCOMPARE(result.fields.at(3)->defaultValue.value<QColor>(), QColor(255, 255, 255, 255));

    // Each alone, too.
    for (const QString& sample : samples.split(QStringLiteral(";\n"), Qt::SkipEmptyParts))
        QVERIFY2(params::compile(sample + QLatin1Char(';')).ok(), qPrintable(sample));
}

void TestParamsParser::declarationsChangeOwner()
{
    params::Scanner scanner(QStringLiteral("int a; texture t 'f'; int b;"));
    params::Parser parser(scanner);
    parser.parse();
    QCOMPARE(parser.errors().count(), 0);
    QCOMPARE(int(parser.fields().size()), 2);

    std::vector<std::unique_ptr<MField>> fields = parser.takeFields();
    std::vector<std::unique_ptr<MTexture>> textures = parser.takeTextures();
    QCOMPARE(int(fields.size()), 2);
    QCOMPARE(fields.at(1)->name, QByteArray("b"));
    QCOMPARE(int(textures.size()), 1);
    QVERIFY(textures.at(0)->parent() == nullptr);
    QVERIFY(parser.fields().empty());
    QVERIFY(parser.textures().empty());
    QVERIFY(parser.takeFields().empty());
}

QUILLMERE_TEST_MAIN(TestParamsParser)
#include "tst_paramsparser.moc"
