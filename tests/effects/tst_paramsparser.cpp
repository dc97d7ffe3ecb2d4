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
    void positionsFollowLineEnds_data();
    void positionsFollowLineEnds();
    void latin1Text();
    void utf8AfterByteOrderMark();
    void bufferReadsAndGuardsItsBounds();
    void utf8BufferDecodes();
    void messageTableFollowsTokenKinds();
    void errorsAtTheirPlace_data();
    void errorsAtTheirPlace();
    void recoveryReportsOnlyDistantSyntaxErrors_data();
    void recoveryReportsOnlyDistantSyntaxErrors();
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

// Every token up to the end as "kind|text|line:col", the end itself left out.
QStringList scanAll(const QString& text)
{
    params::Scanner scanner(text);
    QStringList tokens;
    // Each token takes at least one character, so more would mean a scanner stuck.
    for (int i = 0; i <= text.size() + 1; ++i) {
        const params::Token token = scanner.scan();
        if (token.kind == params::EofSym)
            return tokens;
        tokens << QStringLiteral("%1|%2|%3:%4").arg(token.kind).arg(token.val).arg(token.line).arg(token.col);
    }
    tokens << QStringLiteral("no end");
    return tokens;
}

QString tok(int kind, const QString& text, int line, int col)
{
    return QStringLiteral("%1|%2|%3:%4").arg(kind).arg(text).arg(line).arg(col);
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
    using namespace params;

    QTest::newRow("ident") << "_a1 Ab_9 texture2"
                           << QStringList{tok(IdentSym, "_a1", 1, 1), tok(IdentSym, "Ab_9", 1, 5),
                                          tok(IdentSym, "texture2", 1, 10)};
    QTest::newRow("digits then letters")
        << "2abc" << QStringList{tok(NumberSym, "2", 1, 1), tok(IdentSym, "abc", 1, 2)};
    QTest::newRow("numbers") << "0 007 +5 -0.25 12.5"
                             << QStringList{tok(NumberSym, "0", 1, 1), tok(NumberSym, "007", 1, 3),
                                            tok(NumberSym, "+5", 1, 7), tok(NumberSym, "-0.25", 1, 10),
                                            tok(NumberSym, "12.5", 1, 16)};
    QTest::newRow("dot after digits")
        << "5. x" << QStringList{tok(NumberSym, "5", 1, 1), tok(NoSym, ".", 1, 2), tok(IdentSym, "x", 1, 4)};
    QTest::newRow("dot then letter") << "-15.x"
                                     << QStringList{tok(NumberSym, "-15", 1, 1), tok(NoSym, ".", 1, 4),
                                                    tok(IdentSym, "x", 1, 5)};
    QTest::newRow("dot before digits")
        << ".5" << QStringList{tok(NoSym, ".", 1, 1), tok(NumberSym, "5", 1, 2)};
    QTest::newRow("two dots") << "1.2.3"
                              << QStringList{tok(NumberSym, "1.2", 1, 1), tok(NoSym, ".", 1, 4),
                                             tok(NumberSym, "3", 1, 5)};
    QTest::newRow("lone signs") << "+ -x +.5"
                                << QStringList{tok(NoSym, "+", 1, 1),    tok(NoSym, "-", 1, 3),
                                               tok(IdentSym, "x", 1, 4), tok(NoSym, "+", 1, 6),
                                               tok(NoSym, ".", 1, 7),    tok(NumberSym, "5", 1, 8)};
    QTest::newRow("strings") << "\"a b\" 'it\"s' \"\""
                             << QStringList{tok(StringSym, "\"a b\"", 1, 1), tok(StringSym, "'it\"s'", 1, 7),
                                            tok(StringSym, "\"\"", 1, 14)};
    QTest::newRow("string keeps comment marks")
        << "\"/* // \"" << QStringList{tok(StringSym, "\"/* // \"", 1, 1)};
    QTest::newRow("unclosed string") << "\"abc" << QStringList{tok(NoSym, "\"abc", 1, 1)};
    QTest::newRow("string cut by line end")
        << "'ab\ncd'"
        << QStringList{tok(NoSym, "'ab", 1, 1), tok(IdentSym, "cd", 2, 1), tok(NoSym, "'", 2, 3)};
    QTest::newRow("string cut by return")
        << "\"ab\rc\""
        << QStringList{tok(NoSym, "\"ab", 1, 1), tok(IdentSym, "c", 2, 1), tok(NoSym, "\"", 2, 2)};
    QTest::newRow("punctuation") << ";=(,)"
                                 << QStringList{tok(SemicolonSym, ";", 1, 1), tok(EqualsSym, "=", 1, 2),
                                                tok(LeftParenSym, "(", 1, 3), tok(CommaSym, ",", 1, 4),
                                                tok(RightParenSym, ")", 1, 5)};
    QTest::newRow("unknown characters") << "{#/*" + QString(QChar(0)) + QChar(0xE9)
                                        << QStringList{tok(NoSym, "{", 1, 1), tok(NoSym, "#", 1, 2)};
    QTest::newRow("slash alone") << "a/b *"
                                 << QStringList{tok(IdentSym, "a", 1, 1), tok(NoSym, "/", 1, 2),
                                                tok(IdentSym, "b", 1, 3), tok(NoSym, "*", 1, 5)};
    QTest::newRow("nul and latin-1 letter")
        << QString(QChar(0)) + QStringLiteral(" ") + QChar(0xE9)
        << QStringList{tok(NoSym, QString(QChar(0)), 1, 1), tok(NoSym, QString(QChar(0xE9)), 1, 3)};
    QTest::newRow("nested comment") << "/* a /* b */ c */int" << QStringList{tok(IntSym, "int", 1, 18)};
    QTest::newRow("comment closing at once")
        << "/**/x /*/ y */z" << QStringList{tok(IdentSym, "x", 1, 5), tok(IdentSym, "z", 1, 15)};
    QTest::newRow("line comment") << "a // b c\nd"
                                  << QStringList{tok(IdentSym, "a", 1, 1), tok(IdentSym, "d", 2, 1)};
    QTest::newRow("line comment at end") << "a // b" << QStringList{tok(IdentSym, "a", 1, 1)};
    QTest::newRow("unclosed block comment ends the text")
        << "a /* b /* c */ d" << QStringList{tok(IdentSym, "a", 1, 1)};
    QTest::newRow("block comment over lines") << "/*\n\n*/ x" << QStringList{tok(IdentSym, "x", 3, 4)};
    QTest::newRow("line comment inside block") << "/* // */ x" << QStringList{tok(IdentSym, "x", 1, 10)};
}

void TestParamsParser::tokens()
{
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    QCOMPARE(scanAll(text), expected);
}

void TestParamsParser::positionsFollowLineEnds_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    using namespace params;
    QTest::newRow("line feed") << "a\nb" << QStringList{tok(IdentSym, "a", 1, 1), tok(IdentSym, "b", 2, 1)};
    QTest::newRow("return alone") << "a\rb"
                                  << QStringList{tok(IdentSym, "a", 1, 1), tok(IdentSym, "b", 2, 1)};
    QTest::newRow("return line feed")
        << "a\r\nb" << QStringList{tok(IdentSym, "a", 1, 1), tok(IdentSym, "b", 2, 1)};
    QTest::newRow("line feed return")
        << "a\n\rb" << QStringList{tok(IdentSym, "a", 1, 1), tok(IdentSym, "b", 3, 1)};
    QTest::newRow("two returns") << "a\r\r\nb"
                                 << QStringList{tok(IdentSym, "a", 1, 1), tok(IdentSym, "b", 3, 1)};
    QTest::newRow("tab is one column")
        << "\ta\t b" << QStringList{tok(IdentSym, "a", 1, 2), tok(IdentSym, "b", 1, 5)};
    QTest::newRow("columns restart") << "ab cd\n  ef"
                                     << QStringList{tok(IdentSym, "ab", 1, 1), tok(IdentSym, "cd", 1, 4),
                                                    tok(IdentSym, "ef", 2, 3)};
}

void TestParamsParser::positionsFollowLineEnds()
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
    QCOMPARE(errors.message(0), QStringLiteral("EOF expected"));
    QCOMPARE(errors.message(1), QStringLiteral("ident expected"));
    QCOMPARE(errors.message(2), QStringLiteral("number expected"));
    QCOMPARE(errors.message(3), QStringLiteral("string expected"));
    // Each literal token's message names the literal the scanner reads as that kind.
    QCOMPARE(literals().size(), 33);
    for (int kind = 4; kind <= 36; ++kind) {
        QCOMPARE(errors.message(kind), QStringLiteral("\"%1\" expected").arg(literals().at(kind - 4)));
        QCOMPARE(params::Scanner::literals().get(literals().at(kind - 4), -1), kind);
    }
    QCOMPARE(errors.message(37), QStringLiteral("??? expected"));
    QCOMPARE(errors.message(38), QStringLiteral("invalid TextureOptions"));
    QCOMPARE(errors.message(39), QStringLiteral("invalid WrapModeOption"));
    QCOMPARE(errors.message(40), QStringLiteral("invalid Filter"));
    QCOMPARE(errors.message(41), QStringLiteral("invalid WrapMode"));
    QCOMPARE(errors.message(42), QStringLiteral("invalid VarType"));
    QCOMPARE(errors.message(43), QStringLiteral("invalid Expression"));
    QCOMPARE(errors.message(44), QStringLiteral("invalid Info"));
    QCOMPARE(errors.message(45), QStringLiteral("error 45"));
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
    const QString fourTextures =
        QStringLiteral("texture a \"a\";\ntexture b \"b\";\ntexture c \"c\";\ntexture d \"d\";\n");

    QTest::newRow("EOF") << "int a; )" << QStringList{errorLine(1, 8, "EOF expected")};
    QTest::newRow("ident") << "int 5;" << QStringList{errorLine(1, 5, "ident expected")};
    QTest::newRow("texture ident") << "texture \"f\";" << QStringList{errorLine(1, 9, "ident expected")};
    QTest::newRow("number") << "float a max = ;"
                            << QStringList{errorLine(1, 15, "number expected"),
                                           errorLine(1, 15, "Invalid number")};
    QTest::newRow("string") << "texture t;" << QStringList{errorLine(1, 10, "string expected")};
    QTest::newRow("enum string") << "enum e = 1 enum values = 1;"
                                 << QStringList{errorLine(1, 27, "string expected")};
    QTest::newRow("semicolon") << "int a" << QStringList{errorLine(1, 6, "\";\" expected")};
    QTest::newRow("filter") << "texture t \"f\" min = nearest;"
                            << QStringList{errorLine(1, 19, "\"filter\" expected")};
    QTest::newRow("mag filter") << "texture t \"f\" mag linear;"
                                << QStringList{errorLine(1, 19, "\"filter\" expected")};
    QTest::newRow("equals") << "float a max 1;" << QStringList{errorLine(1, 13, "\"=\" expected")};
    QTest::newRow("left paren") << "color c = rgb 1, 2, 3);"
                                << QStringList{errorLine(1, 15, "\"(\" expected")};
    QTest::newRow("comma") << "color c = rgb(1 2, 3);" << QStringList{errorLine(1, 17, "\",\" expected")};
    QTest::newRow("right paren") << "color c = rgb(1, 2, 3;"
                                 << QStringList{errorLine(1, 22, "\")\" expected")};
    QTest::newRow("values") << "float a enum = 1 \"x\";"
                            << QStringList{errorLine(1, 14, "\"values\" expected")};
    QTest::newRow("invalid Filter") << "texture t \"f\" min filter = repeat;"
                                    << QStringList{errorLine(1, 28, "invalid Filter")};
    QTest::newRow("invalid WrapMode")
        << "texture t \"f\" wraps = linear;" << QStringList{errorLine(1, 23, "invalid WrapMode")};
    QTest::newRow("invalid Expression") << "int a = ;" << QStringList{errorLine(1, 9, "invalid Expression")};
    QTest::newRow("dot number") << "float a = .5;" << QStringList{errorLine(1, 11, "invalid Expression")};
    QTest::newRow("number and dot") << "float a = 5.;" << QStringList{errorLine(1, 12, "\";\" expected")};
    QTest::newRow("unclosed string") << "float a \"abc;" << QStringList{errorLine(1, 9, "\";\" expected")};
    // "min" starts an Info too; the number it lacks is read from the token before.
    QTest::newRow("keyword as name") << "float min;"
                                     << QStringList{errorLine(1, 7, "ident expected"),
                                                    errorLine(1, 10, "Invalid number")};
    QTest::newRow("too large") << "float a = 1" + QString(400, QLatin1Char('9')) + ";"
                               << QStringList{errorLine(1, 412, "Invalid number")};
    QTest::newRow("too small") << "float a = 0." + QString(400, QLatin1Char('0')) + "1;"
                               << QStringList{errorLine(1, 414, "Invalid number")};
    QTest::newRow("fifth texture") << fourTextures + "  texture e \"e\";"
                                   << QStringList{errorLine(5, 3, "You can use 4 user textures max.")};
    QTest::newRow("sixth texture") << fourTextures + "texture e \"e\"; texture f \"f\";"
                                   << QStringList{errorLine(5, 1, "You can use 4 user textures max."),
                                                  errorLine(5, 16, "You can use 4 user textures max.")};
    QTest::newRow("on later lines") << "\n\n   int a = ;"
                                    << QStringList{errorLine(3, 12, "invalid Expression")};
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

void TestParamsParser::recoveryReportsOnlyDistantSyntaxErrors_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    // After a missing ";" nothing fits any more, but it is said once.
    QTest::newRow("missing semicolon once") << "float a 5;" << QStringList{errorLine(1, 9, "\";\" expected")};
    QTest::newRow("missing semicolon before next")
        << "float a float b;" << QStringList{errorLine(1, 9, "\";\" expected")};
    // Every declaration that reads two tokens gets its own report.
    QTest::newRow("each declaration")
        << "int a int b int c"
        << QStringList{errorLine(1, 7, "\";\" expected"), errorLine(1, 13, "\";\" expected"),
                       errorLine(1, 18, "\";\" expected")};
    QTest::newRow("far apart") << "float a = ;\nfloat b = ;"
                               << QStringList{errorLine(1, 11, "invalid Expression"),
                                              errorLine(2, 11, "invalid Expression")};
    // "int =": the missing name is reported; the expression error one token on is
    // not; the next declaration's error is.
    QTest::newRow("near one hidden") << "int = ; int b = ;"
                                     << QStringList{errorLine(1, 5, "ident expected"),
                                                    errorLine(1, 17, "invalid Expression")};
    // Semantic errors come whatever the distance...
    QTest::newRow("semantic right after syntax")
        << "float a max = = 1;"
        << QStringList{errorLine(1, 15, "number expected"), errorLine(1, 15, "Invalid number")};
    // ...and don't hide a syntax error that follows.
    QTest::newRow("syntax right after semantic")
        << "float a = 1" + QString(400, QLatin1Char('9')) + " b;"
        << QStringList{errorLine(1, 413, "Invalid number"), errorLine(1, 413, "\";\" expected")};
    QTest::newRow("after fifth texture")
        << "texture a 'a'; texture b 'b'; texture c 'c'; texture d 'd'; texture e;"
        << QStringList{errorLine(1, 61, "You can use 4 user textures max."),
                       errorLine(1, 70, "string expected")};
}

void TestParamsParser::recoveryReportsOnlyDistantSyntaxErrors()
{
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    const params::Result result = params::compile(text);
    QCOMPARE(result.errors, expected);
    QCOMPARE(result.errorCount, expected.size());
}

void TestParamsParser::fieldsTakeTypeNameAndDefaults()
{
    const params::Result result = params::compile(
        QStringLiteral("FLOAT A;\nint Count; BOOL flag; color tint; Enum choice; float x_2;"));
    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));
    QCOMPARE(int(result.fields.size()), 6);

    const MField& a = *result.fields.at(0);
    QCOMPARE(a.name, QByteArray("A"));
    QCOMPARE(a.type, int(QVariant::Double));
    QCOMPARE(a.defaultValue.userType(), int(QMetaType::Double));
    QCOMPARE(a.defaultValue.toDouble(), 0.0);
    QCOMPARE(a.minimum(), 0.0);
    QCOMPARE(a.maximum(), 1.0);
    QCOMPARE(a.step, 0.1);
    QVERIFY(a.label.isEmpty());
    QVERIFY(a.enumName.isEmpty());
    QVERIFY(!a.hasPickList());

    QCOMPARE(result.fields.at(1)->name, QByteArray("Count"));
    QCOMPARE(result.fields.at(1)->type, int(QVariant::Int));
    QVERIFY(result.fields.at(1)->enumName.isEmpty());
    QCOMPARE(result.fields.at(2)->type, int(QVariant::Bool));
    QCOMPARE(result.fields.at(3)->type, int(QVariant::Color));
    QCOMPARE(result.fields.at(4)->type, int(QVariant::Int));
    QCOMPARE(result.fields.at(4)->enumName, QByteArray("enum"));
    QCOMPARE(result.fields.at(5)->name, QByteArray("x_2"));
    QVERIFY(result.textures.empty());
}

void TestParamsParser::numberDefaultsByKind()
{
    const params::Result result = params::compile(
        QStringLiteral(
            "int a = 3.9; int b = -3.9; enum c = 2.7; float d = 0.25; float e = true; bool f = false; "
            "bool g = 1; int h = 99999999999; int i = -99999999999; float j = 1") +
        QString(60, QLatin1Char('0')) + QLatin1Char(';'));
    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));

    const auto value = [&](int index) { return result.fields.at(size_t(index))->defaultValue; };
    QCOMPARE(value(0).userType(), int(QMetaType::Int));
    QCOMPARE(value(0).toInt(), 3);
    QCOMPARE(value(1).toInt(), -3);
    QCOMPARE(value(2).userType(), int(QMetaType::Int));
    QCOMPARE(value(2).toInt(), 2);
    // A number on any other kind is single precision.
    QCOMPARE(value(3).userType(), int(QMetaType::Float));
    QCOMPARE(value(3).toFloat(), 0.25f);
    // true on a float field: a bool default on a double field, no error.
    QCOMPARE(result.fields.at(4)->type, int(QVariant::Double));
    QCOMPARE(value(4).userType(), int(QMetaType::Bool));
    QCOMPARE(value(4).toBool(), true);
    QCOMPARE(value(5).userType(), int(QMetaType::Bool));
    QCOMPARE(value(5).toBool(), false);
    QCOMPARE(value(6).userType(), int(QMetaType::Float));
    QCOMPARE(value(6).toFloat(), 1.0f);
    // Out of the range of int: its ends.
    QCOMPARE(value(7).toInt(), std::numeric_limits<int>::max());
    QCOMPARE(value(8).toInt(), std::numeric_limits<int>::min());
    // Out of the range of float: its largest value.
    QCOMPARE(value(9).toFloat(), std::numeric_limits<float>::max());
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
    QCOMPARE(result.fields.at(1)->minimum(), -1.0);
    QCOMPARE(result.fields.at(1)->maximum(), 0.0);
    QCOMPARE(result.fields.at(2)->minimum(), 1.0);
    QCOMPARE(result.fields.at(2)->maximum(), 5.0);
    QCOMPARE(result.fields.at(3)->minimum(), 3.0);
    QCOMPARE(result.fields.at(3)->maximum(), 7.0);
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

    const MTexture& plain = *result.textures.at(0);
    QCOMPARE(plain.name, QByteArray("Plain"));
    QCOMPARE(plain.fileName, QStringLiteral("$TEXTURES/paper.png"));
    QCOMPARE(plain.minFilter, 5);
    QCOMPARE(plain.magFilter, 1);
    QCOMPARE(plain.wrapS, 2);
    QCOMPARE(plain.wrapT, 2);

    const MTexture& all = *result.textures.at(1);
    QCOMPARE(all.name, QByteArray("all"));
    QCOMPARE(all.fileName, QStringLiteral("a b.png"));
    QCOMPARE(all.minFilter, 0);
    QCOMPARE(all.magFilter, 2);
    QCOMPARE(all.wrapS, 0);
    QCOMPARE(all.wrapT, 1);

    // A later option wins.
    const MTexture& later = *result.textures.at(2);
    QVERIFY(later.fileName.isEmpty());
    QCOMPARE(later.minFilter, 3);
    QCOMPARE(later.magFilter, 4);
    QCOMPARE(later.wrapS, 3);
    QCOMPARE(later.wrapT, 2);

    const MTexture& last = *result.textures.at(3);
    QCOMPARE(last.magFilter, 5);
    QCOMPARE(last.wrapS, 4);
    QCOMPARE(last.wrapT, 2);
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
