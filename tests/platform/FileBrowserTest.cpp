// Against a message bus of the test's own, on which the test is the file manager.

#include "platform/FileBrowser.h"

#include "ChildTest.h"
#include "TemporaryFolder.h"
#include "WaitUntil.h"
#include "platform/ChildProcess.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVirtualObject>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.FileManager1"_s;
const QString path = u"/org/freedesktop/FileManager1"_s;

enum class Manner { Answers, Refuses, IsSilent };

// A file manager on the bus.
class FileManager : public QDBusVirtualObject {
public:
    QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        calls += message;
        switch (manner) {
        case Manner::Answers:
            connection.send(message.createReply());
            break;
        case Manner::Refuses:
            connection.send(message.createErrorReply(QDBusError::Failed, u"cannot"_s));
            break;
        case Manner::IsSilent:
            waiting += message;
            break;
        }
        return true;
    }

    Manner manner = Manner::Answers;
    QList<QDBusMessage> calls;
    QList<QDBusMessage> waiting; // without an answer so far
};

// What would open a folder: a desktop's own way, taken over by the test.
class Desktop : public QObject {
    Q_OBJECT
public:
    Desktop() { QDesktopServices::setUrlHandler(u"file"_s, this, "open"); }
    ~Desktop() override { QDesktopServices::unsetUrlHandler(u"file"_s); }

    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl& address) { opened += address; }
};

const char* const busProgram = "/usr/bin/dbus-daemon";

// Lives as long as the tests: a program has one session bus, which it asks for once. Its address
// is set before the application is made.
class Bus {
public:
    Bus() {
        const std::string address = "unix:path=" + (folder_ / "bus").string();
        write(folder_ / "bus.conf",
              "<busconfig><type>session</type><listen>" + address +
                  "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                  "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
                  "<allow own=\"*\"/></policy></busconfig>");
        qputenv("DBUS_SESSION_BUS_ADDRESS", address.c_str());
        qputenv("XDG_RUNTIME_DIR", folder_.path().c_str());
    }

    // False where there is no such program.
    bool start() {
        daemon_ = platform::ChildProcess::make(
            {.program = busProgram,
             .arguments = {"--nofork", "--nopidfile",
                           "--config-file=" + (folder_ / "bus.conf").string()}});
        return !daemon_->start({}) &&
               waitUntil([this] { return std::filesystem::exists(folder_ / "bus"); });
    }
    void stop() {
        platform::stopChild(daemon_);
        if (daemon_)
            daemon_->waitForExit();
        daemon_.reset();
    }

private:
    TemporaryFolder folder_;
    std::shared_ptr<platform::ChildProcess> daemon_;
};

Bus* theBus = nullptr;

class FileBrowserTest : public testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(busProgram))
            GTEST_SKIP() << "there is no " << busProgram;
        if (!bus_) {
            bus_.emplace(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"manager"_s));
            ASSERT_TRUE(bus_->isConnected());
        }
    }

    void TearDown() override {
        if (bus_) {
            for (const QDBusMessage& call : manager_.waiting)
                bus_->send(call.createReply());
            bus_->unregisterService(service);
            bus_->unregisterObject(path);
        }
    }

    void offer(Manner manner) {
        manager_.manner = manner;
        ASSERT_TRUE(bus_->registerVirtualObject(path, &manager_));
        ASSERT_TRUE(bus_->registerService(service));
    }

    // What a call brings: a look of the file manager, or an opened folder.
    bool isCalled() {
        return QTest::qWaitFor([this] { return !manager_.calls.isEmpty(); }, 30000);
    }
    bool isOpened() {
        return QTest::qWaitFor([this] { return !desktop_.opened.isEmpty(); }, 30000);
    }

    // Whether the file manager answers somebody else: all answers before have come by then.
    bool answersSomebody(int patience) {
        const QDBusMessage other =
            QDBusMessage::createMethodCall(service, path, service, u"Ping"_s);
        QDBusPendingCallWatcher watcher(QDBusConnection::sessionBus().asyncCall(other, patience));
        bool isOver = false;
        QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, [&] { isOver = true; });
        return QTest::qWaitFor([&] { return isOver; }, 30000) && !watcher.isError();
    }

    FileManager manager_;
    Desktop desktop_;
    inline static std::optional<QDBusConnection> bus_;
};

TEST_F(FileBrowserTest, the_file_manager_is_asked_to_select_the_file) {
    offer(Manner::Answers);
    platform::showInFileBrowser(u"/daten/Köln #1 100%/ein?/origin.nxd"_s);
    EXPECT_TRUE(manager_.calls.isEmpty()) << "the call has returned before";
    ASSERT_TRUE(isCalled());
    const QDBusMessage& call = manager_.calls.first();
    EXPECT_EQ(call.interface(), service);
    EXPECT_EQ(call.member(), u"ShowItems"_s);
    EXPECT_EQ(call.signature(), u"ass"_s);
    EXPECT_EQ(call.arguments().at(0).toStringList(),
              QStringList(u"file:///daten/K%C3%B6ln%20%231%20100%25/ein%3F/origin.nxd"_s));
    EXPECT_EQ(call.arguments().at(1).toString(), QString());
}

TEST_F(FileBrowserTest, an_answer_opens_nothing_else) {
    offer(Manner::Answers);
    for (int count = 1; count <= 3; ++count) {
        platform::showInFileBrowser(u"/daten/origin.nxd"_s);
        ASSERT_TRUE(QTest::qWaitFor([&] { return manager_.calls.size() == count; }, 30000));
    }
    EXPECT_TRUE(answersSomebody(30000));
    EXPECT_EQ(desktop_.opened, QList<QUrl>());
}

TEST_F(FileBrowserTest, without_a_file_manager_the_folder_is_opened_at_once) {
    offer(Manner::IsSilent);
    platform::showInFileBrowser(u"/before/origin.nxd"_s);
    ASSERT_TRUE(isCalled());
    ASSERT_TRUE(bus_->unregisterService(service));
    platform::showInFileBrowser(u"/daten/Köln #1/origin.nxd"_s);
    ASSERT_TRUE(isOpened());
    EXPECT_EQ(desktop_.opened, QList<QUrl>{QUrl::fromLocalFile(u"/daten/Köln #1"_s)})
        << "nobody is there to wait for, unlike before";
}

TEST_F(FileBrowserTest, a_file_manager_that_cannot_select_opens_the_folder) {
    offer(Manner::Refuses);
    platform::showInFileBrowser(u"/daten/origin.nxd"_s);
    ASSERT_TRUE(isOpened());
    EXPECT_EQ(manager_.calls.size(), 1);
    EXPECT_EQ(desktop_.opened, QList<QUrl>{QUrl::fromLocalFile(u"/daten"_s)});
}

TEST_F(FileBrowserTest, a_slow_answer_opens_nothing_else) {
    offer(Manner::IsSilent);
    platform::showInFileBrowser(u"/daten/origin.nxd"_s);
    ASSERT_TRUE(isCalled());
    EXPECT_FALSE(answersSomebody(4000)) << "a long silence";
    EXPECT_EQ(desktop_.opened, QList<QUrl>());

    manager_.manner = Manner::Answers;
    bus_->send(manager_.waiting.takeFirst().createReply());
    EXPECT_TRUE(answersSomebody(30000));
    EXPECT_EQ(desktop_.opened, QList<QUrl>());
}

TEST_F(FileBrowserTest, a_file_manager_that_ends_without_an_answer_opens_the_folder) {
    FileManager passing;
    passing.manner = Manner::IsSilent;
    auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"passing"_s);
    ASSERT_TRUE(bus.registerVirtualObject(path, &passing));
    ASSERT_TRUE(bus.registerService(service));
    platform::showInFileBrowser(u"/daten/origin.nxd"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !passing.calls.isEmpty(); }, 30000));
    EXPECT_EQ(desktop_.opened, QList<QUrl>());
    bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(u"passing"_s);
    ASSERT_TRUE(isOpened());
    EXPECT_EQ(desktop_.opened, QList<QUrl>{QUrl::fromLocalFile(u"/daten"_s)});
}

// The last test: nothing comes after it.
TEST_F(FileBrowserTest, when_the_bus_has_gone_the_folder_is_opened) {
    theBus->stop();
    ASSERT_TRUE(QTest::qWaitFor([] { return !bus_->isConnected(); }, 30000));
    platform::showInFileBrowser(u"/daten/origin.nxd"_s);
    ASSERT_TRUE(isOpened());
    EXPECT_EQ(desktop_.opened, QList<QUrl>{QUrl::fromLocalFile(u"/daten"_s)});
}

} // namespace

int main(int count, char** values) {
    testing::InitGoogleTest(&count, values);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    Bus bus;
    bus.start();
    theBus = &bus;
    const QGuiApplication application(count, values);
    const int result = RUN_ALL_TESTS();
    bus.stop();
    return result;
}

#include "FileBrowserTest.moc"
