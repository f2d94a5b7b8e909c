// Texts as the titles of menus' items, buttons and labels with a buddy, in all of which a single
// "&" marks a letter for the keyboard.

#include "look/text/LiteralText.h"
#include "tests/fuzz/Input.h"

#include <QKeySequence>

using namespace Qt::StringLiterals;

namespace {

struct Shown {
    QString text;
    int marked = 0; // letters that the keyboard reaches
};

// What such a title shows: the letter behind an "&" is marked, and may be an "&" itself, which is
// not.
Shown shown(const QString& title) {
    Shown read;
    for (qsizetype i = 0; i < title.size(); ++i) {
        if (title.at(i) == u'&') {
            if (++i == title.size())
                break;
            read.marked += title.at(i) != u'&';
        }
        read.text += title.at(i);
    }
    return read;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using fuzz::require;
    const QString text = QString::fromUtf8(fuzz::bytes(data, size));
    const QString title = look::literal(text);
    const Shown read = shown(title);
    require(read.text == text, "a title shows its text");
    require(read.marked == 0, "no letter of a text is for the keyboard");
    require(QKeySequence::mnemonic(title).isEmpty(), "the toolkit finds no key in a text");
    return 0;
}
