#include "support/testenvironment.h"

#include "effects/mfield.h"
#include "effects/mtexture.h"
#include "effects/options/optionserrors.h"
#include "effects/options/optionsresult.h"
#include "effects/options/optionsscanner.h"
#include "effects/params/paramserrors.h"
#include "effects/params/paramsresult.h"
#include "effects/params/paramsscanner.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QRegularExpression>

// Both declaration compilers see whatever the user is typing, so they are fed
// random bytes, random soups of their tokens, and damaged copies of good text, and
// must always come back with a count that matches their lines. The seed is fixed;
// QUILLMERE_FUZZ_SEED and QUILLMERE_FUZZ_ROUNDS change it and the number of inputs.
class TestDeclarationFuzz : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void randomBytes();
    void tokenSoups();
    void mutationsOfGoodText();
    void everyByteValue();
    void largeAndDeepInputs_data();
    void largeAndDeepInputs();

private:
    void check(const QString& text);
    QString describe(const QString& text) const;

    QRandomGenerator m_random;
    quint32 m_seed = 20240611;
    int m_rounds = 1500;
    QStringList m_paramsMessages;
    QStringList m_optionsMessages;
};

namespace {

const QRegularExpression& errorPattern()
{
    static const QRegularExpression pattern(QStringLiteral("^-- line (\\d+) col (\\d+): (.+)$"));
    return pattern;
}

const QRegularExpression& identPattern()
{
    static const QRegularExpression pattern(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    return pattern;
}

// Line ends as the scanner counts them: a line feed, or a return no line feed follows.
int lineEnds(const QString& text)
{
    int count = 0;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('\n'))
            ++count;
        else if (text.at(i) == QLatin1Char('\r') &&
                 (i + 1 == text.size() || text.at(i + 1) != QLatin1Char('\n')))
            ++count;
    }
    return count;
}

// Keywords in two cases, punctuation, numbers, strings, comment marks, blanks and odd characters.
const QStringList& pieces()
{
    static const QStringList list = [] {
        QStringList words =
            QStringLiteral("texture min filter mag wraps wrapt nearest linear nearestmipmapnearest "
                           "nearestmipmaplinear linearmipmapnearest linearmipmaplinear repeat "
                           "mirroredrepeat clamptoedge clamptoborder mirrorclamptoedge int bool "
                           "float color enum true false rgb max increment values")
                .split(QLatin1Char(' '));
        const int count = words.size();
        for (int i = 0; i < count; ++i)
            words << words.at(i).toUpper();
        words << QStringLiteral(
                     ";|;|;|=|=|(|,|)|name|_x9|A|0|5|-3.25|+7|5.|.5|+|-|99999999999999999999|\"label\"|'l'|"
                     "\"unclosed|''|/*|*/|//|/|*| |\n|\r|\r\n|\t|#|{")
                     .split(QLatin1Char('|'))
              << QString(QChar(0)) << QString(QChar(0xE9)) << QString(QChar(0x20AC))
              << QString::fromLatin1("\xEF\xBB\xBF");
        return words;
    }();
    return list;
}

const QStringList& goodTexts()
{
    static const QStringList list{
        "float varName = 0.0 \"description\" min = 0.0 max = 1.0 increment = 0.01;",
        "bool varName = false \"description\";",
        "enum varName = 0 \"description\" enum values =\n   0 \"value 0\"\n   1 \"value 1\"\n   2 \"value "
        "2\";",
        "color varName = rgb(255, 255, 255) \"description\";",
        "texture t \"$TEXTURES/a.png\" min filter = nearest mag filter = linear wraps = repeat wrapt = "
        "mirrorclamptoedge;\r\nint count = 3 'Count' max = 10 increment = 1;",
        "/* a /* nested */ comment */ float a = -0.5; // end\rcolor c = rgb(1, 2, 3, 4);",
        "min filter = nearest; mag filter = linearmipmaplinear;\nwraps = clamptoborder; wrapt = repeat;",
    };
    return list;
}

} // namespace

void TestDeclarationFuzz::initTestCase()
{
    if (qEnvironmentVariableIsSet("QUILLMERE_FUZZ_SEED"))
        m_seed = quint32(qEnvironmentVariableIntValue("QUILLMERE_FUZZ_SEED"));
    if (qEnvironmentVariableIsSet("QUILLMERE_FUZZ_ROUNDS"))
        m_rounds = qMax(1, qEnvironmentVariableIntValue("QUILLMERE_FUZZ_ROUNDS"));
    m_random.seed(m_seed);

    const params::Errors paramsErrors;
    for (int n = 0; n <= 44; ++n)
        m_paramsMessages << paramsErrors.message(n);
    m_paramsMessages << QStringLiteral("Invalid number")
                     << QStringLiteral("You can use 4 user textures max.");
    const options::Errors optionsErrors;
    for (int n = 0; n <= 26; ++n)
        m_optionsMessages << optionsErrors.message(n);
}

QString TestDeclarationFuzz::describe(const QString& text) const
{
    const QString shown = text.size() > 200 ? text.left(200) + QStringLiteral("...") : text;
    return QStringLiteral("seed %1, %2 characters, as UTF-8 hex: %3")
        .arg(m_seed)
        .arg(text.size())
        .arg(QString::fromLatin1(shown.toUtf8().toHex()));
}

// What must hold for any text whatever.
void TestDeclarationFuzz::check(const QString& text)
{
    const int lastLine = lineEnds(text) + 1;
    const auto checkLines = [&](const QStringList& lines, int count, const QStringList& messages) {
        QVERIFY2(count == lines.size(), qPrintable(describe(text)));
        for (const QString& line : lines) {
            const QRegularExpressionMatch match = errorPattern().match(line);
            const int lineNumber = match.captured(1).toInt();
            QVERIFY2(match.hasMatch() && lineNumber >= 1 && lineNumber <= lastLine &&
                         match.captured(2).toInt() >= 1 && messages.contains(match.captured(3)),
                     qPrintable(line + QLatin1Char(' ') + describe(text)));
        }
    };

    const params::Result params = params::compile(text);
    checkLines(params.errors, params.errorCount, m_paramsMessages);
    QVERIFY2(params.textures.size() <= 4, qPrintable(describe(text)));
    if (params.ok()) {
        // A clean parse read a name in every declaration.
        for (const auto& field : params.fields)
            QVERIFY2(identPattern().match(QString::fromLatin1(field->name)).hasMatch(),
                     qPrintable(describe(text)));
        for (const auto& texture : params.textures)
            QVERIFY2(identPattern().match(QString::fromLatin1(texture->name)).hasMatch(),
                     qPrintable(describe(text)));
    }

    const options::Result options = options::compile(text);
    checkLines(options.errors, options.errorCount, m_optionsMessages);
    QVERIFY2(options.minFilter >= 0 && options.minFilter <= 5 && options.magFilter >= 0 &&
                 options.magFilter <= 5 && options.wrapS >= 0 && options.wrapS <= 4 && options.wrapT >= 0 &&
                 options.wrapT <= 4,
             qPrintable(describe(text)));

    // The same text gives the same report.
    QCOMPARE(params::compile(text).errors, params.errors);

    // The scanner moves forward with every token and stays at the end once there.
    params::Scanner scanner(text);
    int previousLine = 1;
    int previousCol = 0;
    for (int i = 0;; ++i) {
        QVERIFY2(i <= text.size() + 1, qPrintable(describe(text)));
        const params::Token token = scanner.scan();
        QVERIFY2(token.line > previousLine || (token.line == previousLine && token.col > previousCol),
                 qPrintable(describe(text)));
        previousLine = token.line;
        previousCol = token.col;
        if (token.kind == params::EofSym)
            break;
        QVERIFY2(!token.val.isEmpty(), qPrintable(describe(text)));
    }
    QCOMPARE(scanner.scan().kind, int(params::EofSym));
}

void TestDeclarationFuzz::randomBytes()
{
    for (int round = 0; round < m_rounds; ++round) {
        const int length = int(m_random.bounded(300));
        QString text;
        text.reserve(length + 3);
        if (m_random.bounded(8) == 0)
            text = QString::fromLatin1("\xEF\xBB\xBF");
        for (int i = 0; i < length; ++i) {
            // Mostly bytes; sometimes characters beyond Latin-1, halves of pairs included.
            if (m_random.bounded(20) == 0)
                text.append(QChar(ushort(m_random.bounded(0x100, 0x10000))));
            else
                text.append(QChar(ushort(m_random.bounded(256))));
        }
        check(text);
        if (QTest::currentTestFailed())
            return;
    }
}

void TestDeclarationFuzz::tokenSoups()
{
    const QStringList& list = pieces();
    for (int round = 0; round < m_rounds; ++round) {
        const int count = int(m_random.bounded(80));
        QString text;
        for (int i = 0; i < count; ++i) {
            text += list.at(int(m_random.bounded(list.size())));
            if (m_random.bounded(3) != 0)
                text += QLatin1Char(' ');
        }
        check(text);
        if (QTest::currentTestFailed())
            return;
    }
}

void TestDeclarationFuzz::mutationsOfGoodText()
{
    for (const QString& good : goodTexts()) {
        const params::Result params = params::compile(good);
        const options::Result options = options::compile(good);
        QVERIFY2(params.ok() || options.ok(), qPrintable(good));
    }
    const QStringList& list = pieces();
    for (int round = 0; round < m_rounds; ++round) {
        QString text = goodTexts().at(int(m_random.bounded(goodTexts().size())));
        const int mutations = 1 + int(m_random.bounded(4));
        for (int m = 0; m < mutations; ++m) {
            const int at = int(m_random.bounded(text.size() + 1));
            const int span = int(m_random.bounded(1, 12));
            switch (m_random.bounded(6)) {
            case 0:
                text.remove(at, span);
                break;
            case 1:
                text.insert(at, list.at(int(m_random.bounded(list.size()))));
                break;
            case 2:
                if (at < text.size())
                    text[at] = QChar(ushort(m_random.bounded(256)));
                break;
            case 3:
                text.insert(at, text.mid(int(m_random.bounded(text.size() + 1)), span));
                break;
            case 4:
                text.truncate(at);
                break;
            default:
                text.insert(at, QString(span, m_random.bounded(2) ? QLatin1Char(';') : QLatin1Char('\r')));
                break;
            }
        }
        check(text);
        if (QTest::currentTestFailed())
            return;
    }
}

void TestDeclarationFuzz::everyByteValue()
{
    QString all;
    for (int value = 0; value < 256; ++value) {
        const QString one = QString(QChar(ushort(value)));
        all += one;
        check(one);
        check(QString::fromLatin1("\xEF\xBB\xBF") + one);
        check(QStringLiteral("float a \"") + one + QStringLiteral("\";"));
        if (QTest::currentTestFailed())
            return;
    }
    check(all);
    check(QString::fromLatin1("\xEF\xBB\xBF") + all);

    // UTF-8 cut short after the mark, at every length.
    const QByteArray mark("\xEF\xBB\xBF");
    const QByteArray sequences("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    for (int length = 0; length <= sequences.size(); ++length) {
        check(QString::fromLatin1(mark + sequences.left(length)));
        check(QString::fromLatin1(mark + "float a '" + sequences.left(length)));
    }
}

void TestDeclarationFuzz::largeAndDeepInputs_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("paramsErrors");
    QTest::addColumn<int>("fields");
    QTest::addColumn<int>("optionsErrors");

    const QString declaration = QStringLiteral("float a = 0.5 \"label\" min = 0 max = 2; /* c */ // d\n");
    QTest::newRow("2 MB of declarations") << declaration.repeated(2 * 1024 * 1024 / declaration.size()) << 0
                                          << 2 * 1024 * 1024 / declaration.size() << 1;
    const QString option = QStringLiteral("min filter = nearest; wraps = repeat;\r\n");
    QTest::newRow("2 MB of options") << option.repeated(2 * 1024 * 1024 / option.size()) << 1 << 0 << 0;
    QTest::newRow("4 MB in one comment")
        << "/*" + QString(4 * 1024 * 1024, QLatin1Char('x')) + "*/ int a;" << 0 << 1 << 1;
    QTest::newRow("deep nesting") << QStringLiteral("/*").repeated(300000) +
                                         QStringLiteral("*/").repeated(300000) + QStringLiteral("int a;")
                                  << 0 << 1 << 1;
    QTest::newRow("deep nesting unclosed")
        << QStringLiteral("/*").repeated(300000) + QStringLiteral("int a;") << 0 << 0 << 0;
    QTest::newRow("many syntax errors") << QStringLiteral("int a ").repeated(100000) << 100000 << 100000 << 1;
    QTest::newRow("many textures") << QStringLiteral("texture t 'f';\n").repeated(20000) << 19996 << 0 << 1;
    QTest::newRow("huge number") << QStringLiteral("float a = ") + QString(100000, QLatin1Char('9')) + ";"
                                 << 1 << 1 << 1;
    QTest::newRow("long fraction") << QStringLiteral("float a = 0.") + QString(100000, QLatin1Char('3')) + ";"
                                   << 0 << 1 << 1;
    QTest::newRow("numbers ending in dots") << QStringLiteral("5.").repeated(500000) << 1 << 0 << 1;
    QTest::newRow("long name") << "float " + QString(1024 * 1024, QLatin1Char('n')) + ";" << 0 << 1 << 1;
    QTest::newRow("long label") << "float a '" + QString(1024 * 1024, QLatin1Char('l')) + "';" << 0 << 1 << 1;
    QTest::newRow("long unclosed string")
        << "float a '" + QString(1024 * 1024, QLatin1Char('l')) << 1 << 1 << 1;
    QTest::newRow("slashes") << QString(1024 * 1024, QLatin1Char('/')) + "\n" +
                                    QString(1024 * 1024, QLatin1Char('/'))
                             << 0 << 0 << 0;
    QTest::newRow("lone slashes") << QStringLiteral("/ ").repeated(500000) << 1 << 0 << 1;
    QTest::newRow("returns") << QString(1024 * 1024, QLatin1Char('\r')) + "int" << 1 << 1 << 1;
    QTest::newRow("signs") << QString(1024 * 1024, QLatin1Char('+')) << 1 << 0 << 1;
}

void TestDeclarationFuzz::largeAndDeepInputs()
{
    QFETCH(QString, text);
    QFETCH(int, paramsErrors);
    QFETCH(int, fields);
    QFETCH(int, optionsErrors);

    QElapsedTimer timer;
    timer.start();
    const params::Result params = params::compile(text);
    QCOMPARE(params.errorCount, paramsErrors);
    QCOMPARE(params.errors.size(), paramsErrors);
    QCOMPARE(int(params.fields.size()), fields);

    const options::Result options = options::compile(text);
    QCOMPARE(options.errorCount, optionsErrors);
    QCOMPARE(options.errors.size(), optionsErrors);
    // Work grows with the text, not faster: a few megabytes take well under this.
    QVERIFY2(timer.elapsed() < 30000, qPrintable(QStringLiteral("%1 ms").arg(timer.elapsed())));
}

QUILLMERE_TEST_MAIN(TestDeclarationFuzz)
#include "tst_declarationfuzz.moc"
