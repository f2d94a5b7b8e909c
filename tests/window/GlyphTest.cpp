// The names of the languages, each in its own script: they need fonts, and then no letter is a box.

#include "LanguageWindowTest.h"

#include <QFontDatabase>
#include <QGlyphRun>
#include <QListView>
#include <QRawFont>
#include <QTextLayout>

namespace {

// Whether the font, or one that stands in for it, has a picture of its own for every letter.
bool isDrawable(const QString& text, const QFont& font) {
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    qsizetype glyphs = 0;
    for (const QGlyphRun& run : runs) {
        // Picture 0 of every font is the one for letters that it does not have.
        if (run.glyphIndexes().contains(0))
            return false;
        glyphs += run.glyphIndexes().size();
    }
    return glyphs > 0;
}

// A font family that draws the item's script, as the installed packages name it.
struct Script {
    int item;
    const char* family;
};
void PrintTo(const Script& script, std::ostream* out) {
    *out << script.item << ", " << script.family;
}

const Script scripts[] = {
    {1, "Inter"},
    {2, "Inter"},
    {3, "Inter"},
    {4, "Inter"},
    {5, "Inter"},
    {6, "Inter"},
    {7, "Inter"},
    {8, "Inter"},
    {9, "Inter"},
    {10, "Noto Sans CJK SC"},
    {11, "Noto Sans CJK JP"},
    {12, "Noto Sans CJK KR"},
    {13, "Noto Sans Arabic"},
    {14, "Noto Sans Devanagari"},
};

class GlyphTest : public LanguageWindowTest, public testing::WithParamInterface<Script> {};

INSTANTIATE_TEST_SUITE_P(Languages, GlyphTest, testing::ValuesIn(scripts), [](const auto& script) {
    std::string code(nxui::languageCodes.at(size_t(script.param.item) - 1));
    std::ranges::replace(code, '-', '_');
    return code;
});

TEST_P(GlyphTest, a_languages_own_name_is_drawn_without_boxes) {
    const auto& [item, family] = GetParam();
    if (!QFontDatabase::families().contains(QLatin1StringView(family)))
        GTEST_SKIP() << "the font " << family << " is not installed (fonts-inter, fonts-noto-core, "
                     << "fonts-noto-cjk)";
    start();
    openDialog();
    const QString name = languages()->itemText(item);
    EXPECT_TRUE(isDrawable(name, languages()->font())) << name.toStdString();
    EXPECT_TRUE(isDrawable(name, languages()->view()->font())) << name.toStdString();
    pressOther();
}

TEST_F(GlyphTest, a_letter_that_no_font_has_is_noticed) {
    start();
    openDialog();
    const char32_t nowhere[] = {0x10FFFD}; // for private use
    EXPECT_FALSE(isDrawable(QString::fromUcs4(nowhere, 1), languages()->font()));
    EXPECT_FALSE(isDrawable(u"日本語"_s + QString::fromUcs4(nowhere, 1), languages()->font()));
    pressOther();
}

} // namespace
