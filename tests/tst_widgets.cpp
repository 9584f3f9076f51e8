#include "support/Rows.h"
#include "support/TestHome.h"
#include "ui/ComboStyle.h"
#include "ui/LateStyle.h"
#include "ui/LineBreaks.h"
#include "ui/MyConmboBox.h"
#include "ui/MyLineEdit.h"
#include "ui/MySlider.h"
#include "ui/MyToolButton.h"
#include "ui/NumberBox.h"
#include "ui/SliderWithNumber.h"
#include "ui/mytoolButtonEnter.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QImage>
#include <QListView>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QWheelEvent>
#include <QWindow>

namespace {

/** Counts the jumps that a slider tells. */
class Listener : public QWidget
{
public:
    int jumps = 0; ///< told as such, not by the system

protected:
    bool event(QEvent *event) override
    {
        jumps += event->type() == 1001 && !event->spontaneous();
        return QWidget::event(event);
    }
};

class Slider : public MySlider
{
public:
    using MySlider::MySlider;
    using MySlider::repeatAction;
};

void press(QWidget *widget, QPointF place, Qt::MouseButton button = Qt::LeftButton)
{
    QMouseEvent event(QEvent::MouseButtonPress, place, button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

/** A step up. */
void turnWheel(QWidget *widget)
{
    QWheelEvent turn({5, 5}, {5, 5}, {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(widget, &turn);
}

/** The smallest rectangle round all pixels of the image that are darker than middle grey. */
QRect inkBox(const QImage &image)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 128)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

} // namespace

/** The small widget classes that the pages place. */
class WidgetsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sliderJumps_data();
    void sliderJumps();
    void comboBoxRemembersItsIndex();
    void theWheelNeedsTheKeyboard();
    void linesEndBehindWords_data();
    void linesEndBehindWords();
    void keyOfAListIsNoneOfTheWindow();
    void listsHaveTheThinScrollBar();
    void comboBoxCentresItsText();
    void lateSheets();
    void picturesOfDevicesAreScaledSmoothly();
    void toolButtonActsAtThePress();
    void lineEditTakesNothing();
};

void WidgetsTest::sliderJumps_data()
{
    const Rows<int, int, double, int> row("minimum", "maximum", "x", "value");
    row("middle, truncated", 1, 8, 100.0, 4);
    row("beyond", 1, 8, 5000.0, 8);
    row("before", 1, 8, -300.0, 1);
    row("between pixels", 0, 400, 100.25, 200);
    row("one value", 3, 3, 100.0, 3);
    row("whole int range", -2147483647, 2147483647, 150.0, 1073741823);
}

void WidgetsTest::sliderJumps()
{
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(double, x);
    Listener listener;
    auto *slider = new Slider(&listener);
    slider->setOrientation(Qt::Horizontal);
    slider->setTracking(false);
    slider->resize(200, 20);
    slider->setRange(minimum, maximum);
    slider->setPageStep(1);
    press(slider, QPointF(x, 10));
    QTEST(slider->value(), "value");
    QCOMPARE(listener.jumps, 1);
    // The base class would go on paging while the button is held, past the place clicked.
    QCOMPARE(slider->repeatAction(), QAbstractSlider::SliderNoAction);

    MySlider orphan;
    orphan.resize(0, 0);
    press(&orphan, QPointF(0, 0));
    QCOMPARE(orphan.value(), 0);
}

void WidgetsTest::comboBoxRemembersItsIndex()
{
    MyConmboBox box;
    box.addItems({"a", "b", "c"});
    box.setCurrentIndex(1);
    box.show();
    QApplication::setActiveWindow(&box);
    press(&box, QPointF(5, 5));
    box.hidePopup();
    QCOMPARE(box.pressIndex(), 1);
    box.setCurrentIndex(2);
    QCOMPARE(box.pressIndex(), 1);
    press(&box, QPointF(5, 5), Qt::RightButton);
    QCOMPARE(box.pressIndex(), 2);
    // A choice by key or wheel can be taken back too.
    QTest::keyClick(&box, Qt::Key_Up);
    QCOMPARE(box.currentIndex(), 1);
    QCOMPARE(box.pressIndex(), 2);
    turnWheel(&box);
    QCOMPARE(box.currentIndex(), 0);
    QCOMPARE(box.pressIndex(), 1);
}

void WidgetsTest::theWheelNeedsTheKeyboard()
{
    QWidget window;
    MyConmboBox box(&window);
    box.addItems({"a", "b"});
    box.setCurrentIndex(1);
    NumberBox number(&window);
    MySlider slider(&window);
    SliderWithNumber shown(&window, "Light", "slider", "number", "line");
    window.show();
    QApplication::setActiveWindow(&window);
    const auto state = [&] {
        return QList<int>{box.currentIndex(), number.value(), slider.value(), shown.slider->value()};
    };
    QList<int> expected = {1, 0, 0, 1};
    const auto turn = [&](QWidget *widget, int index, int step) {
        turnWheel(widget);
        if (state() != expected || widget->hasFocus())
            return false;
        widget->setFocus();
        turnWheel(widget);
        expected[index] += step;
        return state() == expected;
    };
    window.setFocus();
    QVERIFY(turn(&box, 0, -1));
    QVERIFY(turn(&number, 1, 1));
    QVERIFY(turn(&slider, 2, 3));
    QVERIFY(turn(shown.slider, 3, 1)); // at most a page
}

void WidgetsTest::linesEndBehindWords_data()
{
    const Rows<QString> row("lines");
    for (const char *lines : {"请只插入需要修复的设备，|然后点击“确定”。", "一個巨集最多 70 個按鍵事件，|已達上限。",
                              "プロファイルを|インポートしています。|お待ちください…",
                              "デバイスが見つかりません。|接続し直して「OK」を|クリックしてください。",
                              "마우스 설정을 읽는 중입니다. |잠시 기다려 주세요…",
                              "A line of Latin letters is left to Qt, however long it is."})
        row(lines, lines);
}

/** Neither inside a word nor with more lines than that takes; nothing is lost but blanks that end a line. */
void WidgetsTest::linesEndBehindWords()
{
    QFETCH(QString, lines);
    const QFontMetrics metrics(QApplication::font());
    const int width = metrics.horizontalAdvance(QString(17, QChar(0x3042)));
    const QString text = QString(lines).remove('|');
    QCOMPARE(LineBreaks::inWords(text, metrics, width), lines.replace(" |", "|").replace('|', '\n'));
}

/** The keys come to the window below the list, as on a desktop that gives lists no keyboard. */
void WidgetsTest::keyOfAListIsNoneOfTheWindow()
{
    struct : QWidget
    {
        void keyPressEvent(QKeyEvent *event) override { keys << event->key(); }
        QList<int> keys;
    } window;
    MyConmboBox box(&window);
    box.addItems({"a", "b"});
    box.setFocusPolicy(Qt::NoFocus);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    box.setAttribute(Qt::WA_UnderMouse);
    box.showPopup();
    QCursor::setPos(window.mapToGlobal({500, 500}));
    QTest::keyClick(window.windowHandle(), Qt::Key_Down);
    QTest::keyClick(window.windowHandle(), Qt::Key_Return);
    QVERIFY(!box.view()->isVisible() && !box.underMouse());
    QCOMPARE(box.currentIndex(), 1);
    QCOMPARE(window.keys, QList<int>());
    QTest::keyClick(window.windowHandle(), Qt::Key_Return); // this one is
    QCOMPARE(window.keys, QList<int>{Qt::Key_Return});
}

void WidgetsTest::listsHaveTheThinScrollBar()
{
    QWidget page; // as the chooser, whose sheet is older than its list
    page.setStyleSheet("QLabel{color: red;}");
    auto *const box = new MyConmboBox(&page);
    QListView *const list = styleCombo(box, "DialogChange");
    for (int item = 0; item < 20; ++item)
        box->addItem(QString::number(item));
    page.show();
    box->showPopup();
    QCOMPARE(list->verticalScrollBar()->width(), 8);
    box->hidePopup();
}

void WidgetsTest::comboBoxCentresItsText()
{
    QPixmap square(16, 16);
    square.fill(Qt::black);
    MyConmboBox box;
    // A red picture and a blank drop-down, so that all that is dark is text or icon.
    box.setStyleSheet("QComboBox{border:0px;background:#ff8080;color:#000000;}"
                      "QComboBox::drop-down{width:40px;border:0px;background:#ffc0c0;}"
                      "QComboBox::down-arrow{image:none;}");
    box.addItem(square, "HH");
    box.addItem(QString(80, 'H')); // too long
    box.setFixedSize(240, 30);
    for (int item : {0, 1}) {
        box.setCurrentIndex(item);
        const QImage image = box.grab().toImage();
        QCOMPARE(image.pixelColor(2, 2), QColor(0xff, 0x80, 0x80));
        const QRect ink = inkBox(image);
        // The field is what the drop-down leaves; by itself the text would begin at its left end.
        QVERIFY2(ink.isValid() && qAbs(ink.left() - (199 - ink.right())) <= 5,
                 qPrintable(QStringLiteral("%1 to %2").arg(ink.left()).arg(ink.right())));
        QVERIFY(ink.right() < 200 && qAbs(ink.top() - (29 - ink.bottom())) <= 4);
    }
}

/** A sheet comes when its widget shows, or by itself in the end; one that is there stays. */
void WidgetsTest::lateSheets()
{
    QWidget window;
    auto *const seen = new QWidget(&window);
    auto *const unseen = new QWidget(&window);
    unseen->hide();
    for (QWidget *each : {seen, unseen})
        new LateStyle(each, "QWidget{color:red;}");
    QVERIFY(seen->styleSheet().isEmpty());
    unseen->setStyleSheet("QWidget{color:blue;}");
    window.show();
    QCOMPARE(seen->styleSheet(), QString("QWidget{color:red;}"));
    auto *const never = new QWidget(new QWidget(&window));
    new LateStyle(never, "QWidget{color:green;}");
    QTRY_COMPARE(never->styleSheet(), QString("QWidget{color:green;}"));
    QCOMPARE(unseen->styleSheet(), QString("QWidget{color:blue;}"));
}

/** As on a screen of 125 %: of black and white lines some become grey. */
void WidgetsTest::picturesOfDevicesAreScaledSmoothly()
{
    QImage lines(16, 16, QImage::Format_RGB32);
    for (int line = 0; line < 16; ++line)
        std::fill_n(reinterpret_cast<QRgb *>(lines.scanLine(line)), 16, line % 2 ? 0xffffffff : 0xff000000);
    mytoolButtonEnter button;
    button.setStyleSheet("border: 0px;");
    button.setIcon(QPixmap::fromImage(lines));
    button.resize(16, 16);
    QImage shown(20, 20, QImage::Format_RGB32);
    QPainter painter(&shown);
    painter.scale(1.25, 1.25);
    button.render(&painter);
    bool isSmooth = false;
    for (int line = 0; line < shown.height(); ++line)
        isSmooth |= qAbs(qGray(shown.pixel(10, line)) - 128) < 100;
    QVERIFY(isSmooth);
}

/** What it tells is whether the press is the second one. Other mouse buttons do nothing. */
void WidgetsTest::toolButtonActsAtThePress()
{
    MyToolButton button;
    button.setCheckable(true);
    button.resize(60, 20);
    button.show();
    QList<bool> heard;
    connect(&button, &QToolButton::clicked, this, [&](bool second) {
        heard << second;
        QVERIFY(button.isChecked());
    });
    for (const Qt::MouseButton each : {Qt::RightButton, Qt::LeftButton}) {
        QCOMPARE(heard, QList<bool>());
        press(&button, QPointF(5, 5), each);
        QCOMPARE(heard.size(), each == Qt::LeftButton ? 1 : 0);
        QTest::mouseRelease(&button, each);
        QMouseEvent second(QEvent::MouseButtonDblClick, QPointF(5, 5), each, each, Qt::NoModifier);
        QCoreApplication::sendEvent(&button, &second);
        QTest::mouseRelease(&button, each);
    }
    QCOMPARE(heard, (QList<bool>{false, true}));
}

void WidgetsTest::lineEditTakesNothing()
{
    MyLineEdit edit;
    edit.setText(QStringLiteral("Ctrl+A"));
    edit.show();
    QVERIFY(!edit.isReadOnly());
    QSignalSpy changed(&edit, &QLineEdit::textChanged);
    QGuiApplication::clipboard()->setText(QStringLiteral("pasted"));
    QTest::keyClicks(&edit, QStringLiteral("abc"));
    for (const char *keys : {"Backspace", "Del", "Return", "Ctrl+V", "Ctrl+X"})
        QTest::keySequence(&edit, QKeySequence(keys));
    QContextMenuEvent menu(QContextMenuEvent::Mouse, QPoint(2, 2));
    QCoreApplication::sendEvent(&edit, &menu);
    QVERIFY(edit.findChildren<QMenu *>().isEmpty() && !QApplication::activePopupWidget());
    QVERIFY(!edit.acceptDrops() && !edit.testAttribute(Qt::WA_InputMethodEnabled));
    QCOMPARE(changed.count(), 0);
}

HALVARION_TEST_MAIN(WidgetsTest)
#include "tst_widgets.moc"
