// Bytes as the text of an address that a service is to have.

#include "platform/HttpsAddress.h"
#include "tests/fuzz/Input.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// The authority by RFC 3986 (3.2), read without any library; nothing where the text is not
// "https://" in any case and something behind it.
std::optional<QString> authority(const QString& text) {
    if (text.size() <= 8 || text.first(8).toLower() != "https://"_L1)
        return std::nullopt;
    const qsizetype end = std::find_if(text.begin() + 8, text.end(),
                                       [](QChar each) { return u"/?#"_s.contains(each); }) -
                          text.begin();
    return text.sliced(8, end - 8);
}

// A host name and a path that nobody may refuse: letters and digits, cut by single dots and
// slashes.
bool isBeyondDoubt(const QString& text) {
    if (!text.startsWith("https://"_L1))
        return false;
    const QStringList parts = text.sliced(8).split(u'/');
    const auto plain = [](const QString& part) {
        return !part.isEmpty() && std::ranges::all_of(part, [](QChar each) {
            return (each >= u'a' && each <= u'z') || (each >= u'0' && each <= u'9');
        });
    };
    const QStringList labels = parts.first().split(u'.');
    // A name of digits alone is read as an address, and one of more than 63 letters is none.
    return std::ranges::all_of(labels, plain) && labels.last().at(0).isLetter() &&
           std::ranges::all_of(labels, [](const QString& each) { return each.size() < 64; }) &&
           parts.first().size() < 200 && std::ranges::all_of(parts.sliced(1), plain) &&
           !parts.first().contains("xn"_L1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using fuzz::require;
    const QString text = QString::fromUtf8(fuzz::bytes(data, size));
    const std::optional<QUrl> address = platform::httpsAddress(text);
    const std::optional<QUrl> plain = platform::plainHttpsAddress(text);
    require(address || !isBeyondDoubt(text), "an address without any doubt is taken");
    require(plain.has_value() == (address && !text.contains(u'?') && !text.contains(u'#')),
            "a service's address is one with neither query nor fragment");
    if (!address)
        return 0;
    const std::optional<QString> written = authority(text);
    require(written && !written->isEmpty() && !written->startsWith(u':'), "it has a host");
    require(!written->contains(u'@'), "it names no user");
    require(std::ranges::none_of(
                text,
                [](QChar each) { return each <= u' ' || each == u'\x7f' || fuzz::isBlank(each); }),
            "it holds no blank, in whatever script, and no control character");
    const std::optional<QUrl> sent =
        platform::httpsAddress(QString::fromLatin1(address->toEncoded()));
    require(sent && sent->host() == address->host() && sent->port() == address->port(),
            "what is sent is an address of the same host");
    return 0;
}
