#include "ui/formula_editor.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QImage>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QRegularExpression>
#include <QTest>
#include <functional>
#include <iostream>
#include <random>

namespace kelvane {
namespace {

constexpr int kLines = 3;
const char* const kPasteWarning =
    "Pasting Error: Can not paste texts more than one line or those that include end-line "
    "character. Make sure the invisible character at the end of the line is not selected and try "
    "copying again!";
const char* const kDeleteWarning =
    "Pasting Error: Can not delete texts blocks more than one line or those that include end-line "
    "character. Make sure the invisible character at the end of the line is not selected and try "
    "deleting again!";

// An editor of three lines that notes what it asks for.
struct Editor : FormulaEditor {
    Editor()
    {
        FillText(kLines);
        connect(this, &FormulaEditor::topKeyPressed,
                [this](int index) { Asked += "top" + std::to_string(index) + " "; });
        connect(this, &FormulaEditor::stopRequested, [this] { Asked += "stop "; });
        connect(this, &FormulaEditor::nextPageRequested, [this] { Asked += "next "; });
        connect(this, &FormulaEditor::powerModeStarted, [this] { Asked += "power "; });
        connect(this, &FormulaEditor::lineChanged,
                [this](int line) { Asked += "line" + std::to_string(line) + " "; });
        connect(this, &FormulaEditor::messageRequested,
                [this](const QString& title, const QString& text) {
                    Messages.push_back((title + ": " + text).toStdString());
                });
    }

    using FormulaEditor::dropEvent;

    // Characters, and key names such as <Shift+Home>; "|" is Enter.
    Editor& Press(const QString& keys)
    {
        static const QRegularExpression key(QStringLiteral("<([\\w+]+|Ctrl\\+[+=-])>|."));
        for (auto found = key.globalMatch(keys); found.hasNext();) {
            const QRegularExpressionMatch match = found.next();
            if (match.capturedLength() == 1 && match.captured() != QLatin1String("|")) {
                QTest::keyClick(this, match.captured()[0].toLatin1());
                continue;
            }
            const QString name =
                match.capturedLength() == 1 ? QStringLiteral("Return") : match.captured(1);
            const QKeyCombination combination = QKeySequence(name)[0];
            QTest::keyClick(this, combination.key(), combination.keyboardModifiers());
        }
        return *this;
    }

    // The lines with "|" between them, without empty lines at the end.
    std::string Text() const
    {
        std::string text = PowerToPlain(Page());
        EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), LinesPerPage());
        text.erase(text.find_last_not_of('\r') + 1);
        std::replace(text.begin(), text.end(), '\r', '|');
        return text;
    }

    std::string Asked;
    std::vector<std::string> Messages;
};

std::unique_ptr<QMimeData> Mime(const QString& text, const QString& html = {})
{
    auto data = std::make_unique<QMimeData>();
    if (!text.isNull())
        data->setText(text);
    if (!html.isNull())
        data->setHtml(html);
    return data;
}

void SetClipboard(const QString& text, const QString& html = {})
{
    QApplication::clipboard()->setMimeData(Mime(text, html).release());
}

void Commit(QWidget& editor, const QString& text, int start = 0, int length = 0)
{
    QInputMethodEvent event;
    event.setCommitString(text, start, length);
    QApplication::sendEvent(&editor, &event);
}

TEST(FormulaEditor, KeysGiveAnotherPage)
{
    const std::pair<const char*, const char*> cases[] = {
        // completion
        {"2sx", "2sinx"},
        {"s|c|t", "sin|cos|tan"},
        {"l+b", "log+bs"},
        {"S*L", "Sin*Log"},
        {"as|ac|at", "asin|acos|atan"},
        {"abs|AB", "abs|ABs"},
        {"xs|pc|Zt", "xs|pc|Zt"},
        {"(s", "(sin"},
        {"2s<Shift+Left>c", "2sic"},
        // names spelled out
        {"sin|cosx|TAN(x)", "sin|cosx|Tan(x)"},
        {"2logx+asin", "2logx+asin"},
        {"tas|tabs|ta2", "tanasin|tanabs|tana2"},
        {"sis|tt|sini", "sinis|tant|sini"},
        {"ta^2", "tana^(2)"},
        {"s<Left><Right>i", "sini"},
        {"s<Backspace>n", "sin"},
        {"sinsin", "sinsin"},
        // powers
        {"x^2", "x^(2)"},
        {"x^2|+1", "x^(2)+1"},
        {"x^2||y", "x^(2)|y"},
        {"x^2^3|^4", "x^(2^34)"},
        {"^s|x", "^(sin)x"},
        {"x^2<Backspace>3", "x^(3)"},
        {"x^2<Backspace><Backspace>y", "y"},
        {"x^2<Shift+Left>y", "x^(y)"},
        {"x+1<Shift+Left>^2", "x+^(2)"},
        {"x^<Home>2", "2x"},
        // lines
        {" x + 1 ", "x+1"},
        {"px+P", "px+p"},
        {"x|y<Home><Backspace>", "x|y"},
        {"x|y<Ctrl+Home><End><Delete>", "x|y"},
        {"x|y<Home><Ctrl+Backspace>", "x|y"},
        {"x|12<Ctrl+Backspace>3", "x|3"},
        {"12|3<Up><Home><Delete>", "2|3"},
        {"1<Home>|2<Home>|3|4", "1|2|34"},
        {"1|2<Shift+Home>|3", "1|2|3"},
        {"12<Home><Shift+End>3", "3"},
        {"1<Tab>2<Ctrl+I><Meta+X>", "12"},
        // undo, copying
        {"s<Ctrl+Z>", ""},
        {"x^2||s<Ctrl+Z><Ctrl+Z><Ctrl+Z><Ctrl+Shift+Z><Ctrl+Shift+Z><Ctrl+Shift+Z>", "x^(2)|sin"},
        {"x^p<Shift+Home><Ctrl+Ins><End>|+<Shift+Ins>", "x^(p)+x^(p)"},
        {"x^2<Shift+Home><Ctrl+Ins><End><Ctrl+V>", "x^(2)x^(2)"},
        {"x^2<Shift+Home><Shift+Del>||<Ctrl+V>", "||x^(2)"},
    };
    for (const auto& [keys, text] : cases) {
        Editor editor;
        EXPECT_EQ(editor.Press(QString::fromUtf8(keys)).Text(), text) << keys;
        EXPECT_TRUE(editor.Messages.empty()) << keys;
    }
}

TEST(FormulaEditor, KeysAskForSomethingElse)
{
    const std::pair<const char*, const char*> cases[] = {
        {"<Ctrl+Return><Ctrl+Enter>", "top0 top0 "},
        {"<Ctrl+C><Ctrl+Del>", "top4 top4 "},
        {"<Ctrl+X><Ctrl+Shift+X>", "top5 "},
        {"<Ctrl++><Ctrl+=><Ctrl+->", "top1 top1 top2 "},
        {"<Esc>", "stop "},
        {"x^2^3|^4|^", "power power power "},
        {"|<Up>", "line1 line0 "},
        {"<Ctrl+End>||", "line2 next next "},
        {"<Ctrl+End>x^2||", "line2 power next "},
    };
    for (const auto& [keys, asked] : cases)
        EXPECT_EQ(Editor().Press(QString::fromUtf8(keys)).Asked, asked) << keys;

    Editor editor;
    QTest::keyClick(&editor, Qt::Key_Plus, Qt::ControlModifier | Qt::KeypadModifier);
    QTest::keyClick(&editor, Qt::Key_Minus, Qt::ControlModifier | Qt::KeypadModifier);
    QTest::keyClick(&editor, Qt::Key_Plus, Qt::ControlModifier | Qt::ShiftModifier);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::ControlModifier, QString(), true);
    QApplication::sendEvent(&editor, &held);
    EXPECT_EQ(editor.Asked, "top1 top2 top1 ");
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&editor, &escape);
    EXPECT_FALSE(escape.isAccepted()) << "the key itself passes on";
}

TEST(FormulaEditor, LineEndsAreDeleted)
{
    const std::pair<const char*, std::function<void(Editor&)>> actions[] = {
        {"typing", [](Editor& editor) { editor.Press("2"); }},
        {"power", [](Editor& editor) { editor.Press("^"); }},
        {"delete", [](Editor& editor) { editor.Press("<Delete>"); }},
        {"backspace", [](Editor& editor) { editor.Press("<Backspace>"); }},
        {"word", [](Editor& editor) { editor.Press("<Ctrl+Backspace>"); }},
        {"cut", [](Editor& editor) { editor.Press("<Shift+Del>"); }},
        {"enter", [](Editor& editor) { editor.Press("|"); }},
        {"paste", [](Editor& editor) { editor.Press("<Ctrl+V>"); }},
        {"commit", [](Editor& editor) { Commit(editor, "2"); }},
    };
    for (const auto& [name, act] : actions) {
        for (const char* selecting : {"<Ctrl+A>", "<Shift+Up>", "<Home><Shift+Left>"}) {
            SetClipboard("3");
            Editor editor;
            act(editor.Press("x^2||p|z<Up>").Press(selecting));
            EXPECT_EQ(editor.Text(), "x^(2)|p|z") << name << " " << selecting;
            EXPECT_EQ(editor.Messages, std::vector<std::string>{kDeleteWarning}) << name;
        }
    }
}

TEST(FormulaEditor, ForeignTextArrivesDifferently)
{
    const struct {
        const char* Keys; // "=" is where it is pasted
        const char* Plain;
        const char* Html;
        const char* Text;
        bool IsWarned;
    } cases[] = {
        {"y=", "1+x\n", nullptr, "y=1+x", true},
        {"y=", "1+x\r\n2\n3", nullptr, "y=1+x", true},
        {"y=", "\n2", nullptr, "y=", true},
        {"y=", "2 *\tp\x01\xc2\xa0 + \xe2\x80\x8bPx", nullptr, "y=2*p+px", false},
        {"y=", "sx", nullptr, "y=sx", false},
        {"y=", "x^", nullptr, "y=x", false},
        {"y=", "x^(2)", nullptr, "y=x^(2)", false},
        {"y^=", "x\u03C0", nullptr, "y^(=xp)", false},
        {"y^=", "x2", "x<sup>2</sup>", "y^(=x2)", false},
        {"y=", "x2", "<b>x</b><sup><i>p</i></sup>", "y=x^(p)", false},
        {"y=", "x\n", "<p>x</p>", "y=x", true},
        {"y=", "x", "x<br>y", "y=x", true},
        {"y=", nullptr, "<p>x</p><table><tr><td>y</table>", "y=x", true},
        {"y=", "5\n", "<table><tr><td>5</td></tr></table>", "y=5", true},
        {"y=", "", "<img src='file:///etc/passwd'>", "y=", false},
        {"12<Shift+Left>", "3", nullptr, "13", false},
        {"12<Shift+Left>", " \t", nullptr, "12", false},
    };
    for (const auto& test : cases) {
        const std::string name =
            std::string(test.Keys) + " <- " + (test.Plain ? test.Plain : test.Html);
        const std::vector<std::string> messages(test.IsWarned ? 1 : 0, kPasteWarning);
        Editor pasted;
        SetClipboard(QString::fromUtf8(test.Plain), QString::fromUtf8(test.Html));
        pasted.Press(QString::fromUtf8(test.Keys)).Press("<Shift+Ins>");
        EXPECT_EQ(pasted.Text(), test.Text) << name;
        EXPECT_EQ(pasted.Messages, messages) << name;

        Editor dropped;
        const auto data = Mime(QString::fromUtf8(test.Plain), QString::fromUtf8(test.Html));
        QDropEvent drop(QPointF(200, 9), Qt::CopyAction, data.get(), Qt::LeftButton, {});
        dropped.dropEvent(&drop);
        EXPECT_EQ(dropped.Messages, messages) << name;
        EXPECT_EQ(dropped.Asked.find("line"), std::string::npos) << name;
    }
}

TEST(FormulaEditor, InputMethodBreaksTheRules)
{
    Editor editor;
    Commit(editor.Press("x|y"), "+ sin^2\n3");
    EXPECT_EQ(editor.Messages, std::vector<std::string>{kPasteWarning});
    EXPECT_EQ(editor.Text(), "x|y+sin^(2)");
    Commit(editor, "p", -99, 99);
    EXPECT_EQ(editor.Text(), "x|p") << "replaces what is on its line only";
    EXPECT_EQ(editor.Press("<Ctrl+Z>").LinesPerPage(), kLines);
}

TEST(FormulaEditor, PagesChangeOnTheirWay)
{
    const RichPage page{{{"y=x", false}, {"2p", true}}, {}, {{"sin", false}}};
    Editor editor;
    editor.Press("x|y").SetPage(page);
    EXPECT_EQ(editor.Text(), "y=x^(2p)||sin");
    EXPECT_EQ(editor.Press("<Ctrl+Z><Ctrl+Z>").Text(), "y=x^(2p)||sin") << "undone too far";
    EXPECT_EQ(editor.CurrentLine(), 0);
    editor.SetPage({{{"a b\n", false}, {"", true}}, {}, {}, {{"cut", false}}});
    EXPECT_EQ(editor.Text(), "ab");
    editor.SetPage({{{std::string(5000, '1'), false}}});
    EXPECT_EQ(editor.Press("<End>2").Text(), std::string(4000, '1'));
    editor.FillText(5);
    EXPECT_EQ(PowerToPlain(editor.Page()), "\r\r\r\r\r") << "and is not empty";
    QTextCursor(editor.document()).insertText("1\n2"); // as an accessibility tool does
    EXPECT_EQ(PowerToPlain(editor.Page()), "\r\r\r\r\r") << "a line was parted";
    editor.clear();
    EXPECT_EQ(PowerToPlain(editor.Page()), "\r\r\r\r\r") << "lines were lost";
}

// The rows, relative to the line's top, that carry ink.
std::pair<int, int> InkRows(Editor& editor, int line)
{
    editor.moveCursor(QTextCursor::End); // no tint
    const QImage image = editor.viewport()->grab().toImage();
    const QRect area = editor.LineRect(line);
    std::pair<int, int> rows{-1, -1};
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (qGray(image.pixel(x, y)) < 128)
                rows = {rows.first < 0 ? y - area.top() : rows.first, y - area.top()};
    return rows;
}

TEST(FormulaEditor, RaisedTextIsNotRaisedOrMovesLines)
{
    Editor editor;
    editor.resize(editor.sizeHint());
    editor.SetPage({{{"1", false}}, {{"1", true}}});
    const auto base = InkRows(editor, 0);
    const auto raised = InkRows(editor, 1);
    EXPECT_NEAR(base.second - raised.second, 4 * 96 / 72.0, 1) << "not 4 points up";
    EXPECT_NEAR(raised.second - raised.first, (base.second - base.first) * 11.0 / 13, 1) << "size";
    EXPECT_GT(raised.first, 0) << "cut off";
    EXPECT_EQ(editor.LineRect(0).top(), 0) << "scrolled, though all lines fit";
    for (int line = 0; line < kLines; ++line) {
        editor.setTextCursor(QTextCursor(editor.document()->findBlockByNumber(line)));
        const QRect caret = editor.cursorRect();
        EXPECT_TRUE(editor.LineRect(line).adjusted(0, 0, 1, 0).contains(caret)) << line;
        EXPECT_EQ(editor.LineRect(line).top(),
                  editor.LineRect(0).top() + line * editor.LineHeight());
        EXPECT_EQ(editor.LineRect(line).height(), editor.LineHeight());
    }
}

QStringList LinesOf(const Editor& editor)
{
    return QString::fromStdString(PowerToPlain(editor.Page())).split(u'\r');
}

TEST(FormulaEditor, AnythingBreaksTheLines)
{
    constexpr unsigned kSeed = 20240913;
    std::cout << "seed " << kSeed << '\n';
    std::mt19937 random(kSeed);
    const auto upTo = [&](std::size_t count) { return random() % count; };
    const char* const keys[] = {"<Left>",
                                "<Right>",
                                "<Up>",
                                "<Down>",
                                "<Home>",
                                "<End>",
                                "<Shift+Left>",
                                "<Shift+Right>",
                                "<Shift+Up>",
                                "<Shift+Down>",
                                "<Shift+End>",
                                "<Ctrl+Shift+Left>",
                                "<Ctrl+Home>",
                                "<Ctrl+Shift+Right>",
                                "<Ctrl+A>",
                                "<Backspace>",
                                "<Delete>",
                                "<Ctrl+Backspace>",
                                "|",
                                "|",
                                "<Ctrl+Ins>",
                                "<Shift+Del>",
                                "<Shift+Ins>",
                                "<Ctrl+V>",
                                "<Ctrl+Z>",
                                "<Ctrl+Z>",
                                "<Ctrl+Shift+Z>",
                                "<Tab>",
                                "<Ctrl+K>",
                                "<Ctrl+U>",
                                "<Ctrl+Y>",
                                "<Alt+Backspace>",
                                "<Esc>"};
    const std::string letters = "sctlbapPinogxyz^^^()+-*/.,=0123456789 <ABS";
    const char* const texts[] = {"1+x", "x\n",      "\r\n",   "p^",        "\t",
                                 "",    "s\u2028c", "\u2029", "\U0001D465"};
    Editor editor;
    for (int step = 0; step < 10000; ++step) {
        const QStringList before = LinesOf(editor);
        const std::size_t messages = editor.Messages.size();
        const char letter = letters[upTo(letters.size())];
        const std::size_t kind = upTo(100);
        if (kind < 50)
            QTest::keyClick(&editor, letter);
        else if (kind < 90)
            editor.Press(QString::fromUtf8(keys[upTo(std::size(keys))]));
        else if (kind < 95)
            Commit(editor, QString::fromUtf8(texts[upTo(std::size(texts))]),
                   -static_cast<int>(upTo(4)), static_cast<int>(upTo(9)));
        else
            SetClipboard(QString::fromUtf8(texts[upTo(std::size(texts))]),
                         kind < 97 ? QString() : QStringLiteral("<p>x<sup>2</sup></p>y"));
        ASSERT_EQ(editor.document()->blockCount(), kLines) << "step " << step;
        const QString shown = editor.toPlainText().remove(u'\n');
        ASSERT_EQ(ShownText(shown), shown) << "step " << step;
        const QStringList after = LinesOf(editor);
        int changed = 0;
        for (int line = 0; line < kLines; ++line)
            changed += before[line] != after[line];
        ASSERT_LE(changed, 1) << "step " << step;
        if (editor.Messages.size() > messages && editor.Messages.back() == kDeleteWarning) {
            ASSERT_EQ(changed, 0) << "step " << step;
        }
    }
    EXPECT_GT(editor.Messages.size(), 100U) << "the events reach too little";
}

} // namespace
} // namespace kelvane
