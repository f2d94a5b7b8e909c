#include "WindowTest.h"

#include "Messages.h"
#include "localization/NXLocal.h"
#include "look/style/ToolTip.h"

#include <QClipboard>
#include <QHelpEvent>
#include <QTimer>

void settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void WindowTest::SetUp() {
    ChildTest::SetUp();
    takeMessages();
    qunsetenv("TMPDIR");
    folder_.emplace();
    for (const char* name : {"data", "temporary"})
        std::filesystem::create_directory(*folder_ / name);
    qputenv("XDG_DATA_HOME", (*folder_ / "data").c_str());
    qputenv("TMPDIR", (*folder_ / "temporary").c_str());
    importer.emplace(folder_->path());
}

void WindowTest::TearDown() {
    if (app_) {
        // A test that failed half-way must not fail the next one as well.
        if (isBusy()) {
            ADD_FAILURE() << "the window is still busy: " << status().toStdString();
            button("cancelButton")->click();
        }
        EXPECT_EVENTUALLY(!isBusy());
        EXPECT_EQ(alert(), nullptr) << "an alert is left";
    }
    end();
    ChildTest::TearDown();
    EXPECT_EQ(QDir(QString::fromStdString(*folder_ / "temporary"))
                  .entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
              QStringList());
    importer.reset();
    folder_.reset();
    EXPECT_EQ(takeMessages(), QStringList()) << "Qt has printed something";
}

void WindowTest::start(Mode mode) {
    app_ = std::make_unique<NXImportApp>(mode);
    app_->applicationDidFinishLaunching();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
}

void WindowTest::end() {
    look::hideToolTip();
    app_.reset();
    settle();
}

QList<QRadioButton*> WindowTest::segments(const char* name) const {
    return control<look::Segments>(name)->findChildren<QRadioButton*>();
}

void WindowTest::resizeContent(QSize size) {
    window()->resize(size + (window()->size() - window()->centralWidget()->size()));
    settle();
    ASSERT_EQ(window()->centralWidget()->size(), size);
}

QRect WindowTest::place(const QWidget* widget) const {
    return {widget->mapTo(window()->centralWidget(), QPoint()), widget->size()};
}

void WindowTest::click(QWidget* widget) {
    QTest::mouseClick(widget, Qt::LeftButton);
}

void WindowTest::key(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(widget, key, modifiers);
}

void WindowTest::paste(QWidget* field, const QString& text) {
    QGuiApplication::clipboard()->setText(text);
    field->setFocus();
    QTest::keySequence(field, QKeySequence::SelectAll);
    QTest::keySequence(field, QKeySequence::Paste);
}

void WindowTest::clickRow(look::PlaceList* list, int row, Qt::KeyboardModifiers modifiers) {
    const QRect area = list->visualRect(list->model()->index(row, 0));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers, area.center());
}

void WindowTest::choose(look::PopUp* popUp, int index) {
    popUp->setFocus();
    key(popUp, Qt::Key_Home);
    for (int i = 0; i < index; ++i)
        key(popUp, Qt::Key_Down);
    ASSERT_EQ(popUp->currentIndex(), index);
}

void WindowTest::search(const QString& text) {
    paste(field("query"), text);
    key(field("query"), Qt::Key_Return);
}

void WindowTest::searchResults(const QString& text) {
    search(text);
    ASSERT_EVENTUALLY(!isBusy());
    ASSERT_EQ(status(), localization::NXLocal(says::choose));
}

QString WindowTest::toolTipAt(QWidget* widget, QPoint position) {
    look::hideToolTip();
    QHelpEvent event(QEvent::ToolTip, position, widget->mapToGlobal(position));
    QCoreApplication::sendEvent(widget, &event);
    const QWidget* shown = look::shownToolTip();
    return shown && shown->isVisible() ? shown->accessibleName() : QString();
}

QStringList WindowTest::rows() const {
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(list("table"));
    QStringList texts;
    for (int i = 0; i < table->childCount(); ++i)
        texts += table->child(i)->text(QAccessible::Name);
    return texts;
}

bool WindowTest::statusIsRed() const {
    const QImage picture = control("status")->grab().toImage();
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor colour = picture.pixelColor(x, y);
            if (colour.red() > 200 && colour.green() < 150 && colour.blue() < 150)
                return true;
        }
    }
    return false;
}

look::Panel* WindowTest::alert() const {
    const auto panels = window()->findChildren<look::Panel*>();
    EXPECT_LE(panels.size(), 1) << "there is more than one alert";
    return panels.isEmpty() ? nullptr : panels.first();
}

void WindowTest::closeAlert() {
    ASSERT_NE(alert(), nullptr);
    click(alert()->prominentButton());
    settle();
    EXPECT_EQ(alert(), nullptr);
}

void WindowTest::runToTheEnd(const std::function<void()>& act) {
    constexpr int gaveUp = 99;
    QTimer::singleShot(0, window(), act);
    QTimer giveUp;
    giveUp.callOnTimeout([] { QCoreApplication::exit(gaveUp); });
    giveUp.start(std::chrono::seconds(60));
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_FALSE(window()->isVisible());
}

QDir WindowTest::temporaryFolder() const {
    return QString::fromStdString(*folder_ / "temporary");
}

QDir WindowTest::supportFolder() const {
    return QString::fromStdString(*folder_ / "data/Norvaxel/Norvaxel 3D");
}
