#include "search/PhotonTransfer.h"

#include "platform/Descriptors.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <thread>

#ifdef __linux__
#include "BetweenTheLooks.h"
#endif

using namespace Qt::StringLiterals;
using namespace search;

using platform::ChildExit;

namespace {

ChildExit exited(int status) {
    return {ChildExit::Kind::Exited, status};
}

QByteArray bodyOf(const TransferResult& result) {
    const auto* body = std::get_if<QByteArray>(&result);
    return body != nullptr ? *body : QByteArray("no body");
}

TEST(PhotonTransferTest, curl_gets_exactly_these_arguments) {
    const std::vector<std::string> expected = {
        "-q",
        "--silent",
        "--show-error",
        "--fail",
        "--proto",
        "=https",
        "--proto-redir",
        "=https",
        "--connect-timeout",
        "10",
        "--max-time",
        "20",
        "--max-filesize",
        "1048576",
        "--header",
        "Accept: application/json",
        "--user-agent",
        "Norvaxel-Ortsimport/0.5",
        "--write-out",
        "\n%{http_code}",
        "--url",
        "https://example.org/api/?q=Ulm&limit=8&lang=de",
    };
    ASSERT_EQ(expected.size(), 22U);
    EXPECT_EQ(photonArguments(QUrl(u"https://example.org/api/?q=Ulm&limit=8&lang=de"_s)), expected);
}

TEST(PhotonTransferTest, curl_gets_the_address_encoded_and_without_its_own_patterns) {
    struct Row {
        const char16_t* url;
        const char* argument;
    };
    const Row rows[] = {
        {u"https://h/api/?q=Köln a", "https://h/api/?q=K%C3%B6ln%20a"},
        {u"https://h/api/?q=a%2Bb%26c", "https://h/api/?q=a%2Bb%26c"},
        {u"https://h/?q=[1-3]{a,b}", "https://h/?q=%5B1-3%5D%7Ba,b%7D"},
        {u"https://[::1]:8443/api?q=[1-3]", "https://[::1]:8443/api?q=%5B1-3%5D"},
        {u"https://[::1]", "https://[::1]"},
        {u"https://[::1]?[a]", "https://[::1]?%5Ba%5D"},
        {u"https://münchen.example/", "https://xn--mnchen-3ya.example/"},
        {u"HTTPS://h/", "https://h/"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(photonArguments(QUrl(QString::fromUtf16(row.url))).back(), row.argument);
}

TEST(PhotonTransferTest, an_output_is_judged_by_the_table) {
    struct Row {
        ChildExit exit;
        const char* output;
        SearchFailure failure;
    };
    const Row failures[] = {
        {exited(28), "\n200", SearchFailure::CurlTimedOut},
        {exited(63), "\n200", SearchFailure::TooLarge},
        {exited(22), "\n404", SearchFailure::NotResponding},
        {exited(22), "\n200", SearchFailure::NotResponding},
        {exited(6), "\n000", SearchFailure::Unreachable},
        {exited(7), "", SearchFailure::Unreachable},
        {exited(1), "\n200", SearchFailure::Unreachable},
        {exited(255), "\n200", SearchFailure::Unreachable},
        // A signal with the number of a known status is no status.
        {{ChildExit::Kind::Signalled, 28}, "\n200", SearchFailure::Unreachable},
        {{ChildExit::Kind::Signalled, 9}, "\n200", SearchFailure::Unreachable},
        {{ChildExit::Kind::Unknown, 0}, "\n200", SearchFailure::Unreachable},
        {exited(0), "{}\n201", SearchFailure::NotResponding},
        {exited(0), "\n204", SearchFailure::NotResponding},
        {exited(0), "{}\n301", SearchFailure::NotResponding},
        {exited(0), "{}\n2000", SearchFailure::NotResponding},
        {exited(0), "{}\n200\n", SearchFailure::NotResponding},
        {exited(0), "{}\r200", SearchFailure::NotResponding},
        {exited(0), "{}200", SearchFailure::NotResponding},
        {exited(0), "200", SearchFailure::NotResponding},
        {exited(0), "\n20", SearchFailure::NotResponding},
        {exited(0), "", SearchFailure::NotResponding},
    };
    for (const Row& row : failures) {
        const TransferResult result = judgeTransfer(row.output, row.exit);
        ASSERT_TRUE(std::holds_alternative<SearchFailure>(result)) << row.output;
        EXPECT_EQ(std::get<SearchFailure>(result), row.failure)
            << row.output << " " << row.exit.value;
    }
    EXPECT_EQ(bodyOf(judgeTransfer("\n200", exited(0))), QByteArray(""));
    EXPECT_EQ(bodyOf(judgeTransfer("{}\n200", exited(0))), QByteArray("{}"));
    EXPECT_EQ(bodyOf(judgeTransfer("a\n200\n200", exited(0))), QByteArray("a\n200"));
    EXPECT_EQ(bodyOf(judgeTransfer(QByteArray("a\0b\n200", 7), exited(0))), QByteArray("a\0b", 3));
}

// A pipe to read from and the pipe that says when its writer has ended.
struct Source {
    Source() {
        EXPECT_FALSE(platform::openPipe(output));
        EXPECT_FALSE(platform::openPipe(exit));
    }

    TransferResult read() const { return readTransfer(output.readEnd.get(), exit.readEnd.get()); }
    void write(const std::string& text) const {
        EXPECT_EQ(::write(output.writeEnd.get(), text.data(), text.size()), ssize_t(text.size()));
    }
    void end() const { EXPECT_EQ(::write(exit.writeEnd.get(), "", 1), 1); }

    platform::Pipe output;
    platform::Pipe exit;
};

TEST(PhotonTransferTest, an_output_is_read_to_its_end) {
    Source source;
    source.write("body");
    source.output.writeEnd.reset();
    EXPECT_EQ(bodyOf(source.read()), QByteArray("body"));
}

TEST(PhotonTransferTest, a_pipe_that_stays_open_does_not_outlast_the_end_of_curl) {
    Source source;
    source.write("first");
    std::thread curl([&] {
        source.write(" and last");
        source.end();
    });
    EXPECT_EQ(bodyOf(source.read()), QByteArray("first and last"));
    curl.join();
}

TEST(PhotonTransferTest, the_bytes_written_last_are_read_after_the_end_is_known) {
    Source source;
    source.write(std::string(60'000, 'x'));
    source.end();
    EXPECT_EQ(bodyOf(source.read()).size(), 60'000);
}

#ifdef __linux__
TEST(PhotonTransferTest, bytes_written_while_the_end_of_curl_is_looked_for_are_read) {
    const Source source;
    const BetweenTheLooks curl([&] {
        source.write("last");
        source.end();
    });
    EXPECT_EQ(bodyOf(source.read()), QByteArray("last"));
}
#endif

TEST(PhotonTransferTest, an_output_is_read_up_to_the_limit_and_no_further) {
    // The writer must see the reader turn away, not die of it.
    const auto before = ::signal(SIGPIPE, SIG_IGN);
    struct Row {
        std::size_t size;
        bool accepted;
    };
    for (const Row& row : {Row{1'048'580, true}, Row{1'048'581, false}, Row{3'000'000, false}}) {
        Source source;
        std::thread curl([&] {
            const std::string block(10'007, 'x');
            for (std::size_t left = row.size; left > 0;) {
                const ssize_t written = ::write(source.output.writeEnd.get(), block.data(),
                                                std::min(left, block.size()));
                if (written < 0)
                    return; // the reader has turned away
                left -= std::size_t(written);
            }
            source.output.writeEnd.reset();
        });
        const TransferResult result = source.read();
        source.output.readEnd.reset();
        curl.join();
        if (row.accepted)
            EXPECT_EQ(bodyOf(result).size(), qsizetype(row.size));
        else
            EXPECT_EQ(std::get<SearchFailure>(result), SearchFailure::TooLarge);
    }
    ::signal(SIGPIPE, before);
}

TEST(PhotonTransferTest, an_output_that_cannot_be_read_is_a_failure_of_its_own) {
    const Source source;
    const platform::UniqueFd folder(::open("/", O_RDONLY | O_DIRECTORY));
    EXPECT_EQ(std::get<SearchFailure>(readTransfer(folder.get(), source.exit.readEnd.get())),
              SearchFailure::Unreadable);
}

} // namespace
