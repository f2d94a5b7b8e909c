// An address of a geocoder and a text to search for.

#include "platform/HttpsAddress.h"
#include "search/PhotonTransfer.h"
#include "tests/fuzz/Input.h"

#include <algorithm>
#include <string>

namespace {

using fuzz::require;

// The two digits behind a percent sign; -1 where there are none.
int escaped(const std::string& text, std::size_t at) {
    static const std::string digits = "0123456789ABCDEF";
    if (text.size() < at + 3)
        return -1;
    const std::size_t high = digits.find(text[at + 1]);
    const std::size_t low = digits.find(text[at + 2]);
    return high > 15 || low > 15 ? -1 : int(high * 16 + low);
}

// RFC 3986 (2.3): letters, digits and four signs stand for themselves; every other byte is escaped.
std::string encoded(const std::string& bytes) {
    static const std::string plain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    static const std::string digits = "0123456789ABCDEF";
    std::string written;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (plain.find(byte) != std::string::npos)
            written += byte;
        else
            written += {'%', digits[value / 16], digits[value % 16]};
    }
    return written;
}

// As a server reads a form's item: a plus sign is a space, an escape a byte.
std::string decoded(const std::string& item) {
    std::string bytes;
    for (std::size_t at = 0; at < item.size(); ++at) {
        const int byte = item[at] == '%' ? escaped(item, at) : -1;
        if (byte >= 0)
            at += 2;
        bytes += byte >= 0 ? char(byte) : item[at] == '+' ? ' ' : item[at];
    }
    return bytes;
}

// What curl would read as a pattern of several addresses.
bool holdsPattern(const std::string& address) {
    const std::size_t path = address.find_first_of("/?#", std::string("https://").size());
    return address.find_first_of("{}") != std::string::npos ||
           (path != std::string::npos && address.find_first_of("[]", path) != std::string::npos);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QList<QByteArray> fields = fuzz::fields(data, size, 2);
    const auto geocoder = platform::plainHttpsAddress(QString::fromUtf8(fields[0]));
    if (!geocoder)
        return -1;
    const QString text = fuzz::text(fields[1]);
    const QUrl url = search::photonQuery(*geocoder, text);
    require(platform::isHttpsAddress(url), "what is asked is an address over HTTPS");
    require(url.host() == geocoder->host() && url.port() == geocoder->port() &&
                url.path(QUrl::FullyEncoded) == geocoder->path(QUrl::FullyEncoded),
            "the geocoder itself is asked");

    const std::string item = encoded(text.toUtf8().toStdString());
    require(url.query(QUrl::FullyEncoded).toStdString() == "q=" + item + "&limit=8&lang=de",
            "three items in their order, the text escaped completely");
    const std::string argument = search::photonArguments(url).back();
    const std::size_t begin = argument.find("?q=") + 3;
    const std::string given = argument.substr(begin, argument.find('&', begin) - begin);
    require(argument.ends_with("?q=" + item + "&limit=8&lang=de"), "curl is given the same");
    require(decoded(given) == text.toUtf8().toStdString(), "the server reads what was typed");
    require(std::ranges::all_of(argument, [](char each) { return each > ' ' && each <= '~'; }),
            "the address is plain ASCII without a blank");
    require(!holdsPattern(argument), "curl reads no pattern in it");
    return 0;
}
