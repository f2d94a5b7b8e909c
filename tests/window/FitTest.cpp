// Every text has its room: in the language that FIT_LANGUAGE names, in both modes and at both
// sizes, idle and busy, after a success and a failure, with every dialog. What was measured is left
// as pictures in the folder that FIT_PICTURES names.

#include "SearchWindowTest.h"
#include "localization/NXLocal.h"
#include "look/text/Fonts.h"
#include "look/text/LiteralText.h"

#include <QFile>
#include <QGlyphRun>
#include <QPainter>
#include <QRawFont>
#include <QRegularExpression>
#include <QTextLayout>

#include <span>

using namespace localization;

namespace {

const QByteArray language = qgetenv("FIT_LANGUAGE");

} // namespace

const ProgramLanguage programLanguage{language.isEmpty() ? "de" : language.constData(), ""};

namespace {

constexpr QSize natural(820, 760);
constexpr QSize least(780, 730);

// A control that stands in the same place in every language.
struct Row {
    const char* name;
    int top;
    int height;
};
constexpr Row commonRows[] = {
    {"subtitle", 49, 16},      {"mode", 75, 30},  {"query", 115, 34},
    {"searchButton", 116, 32}, {"hint", 159, 15}, {"table", 184, 250},
};
constexpr Row placeRows[] = {
    {"radius", 444, 28}, {"endpoint", 444, 28},       {"endpointField", 482, 24},
    {"status", 516, 48}, {"languageButton", 574, 32}, {"downloadButton", 574, 32},
    {"credit", 616, 28},
};
constexpr Row routeRows[] = {
    {"routePane", 184, 250},
    {"addStationButton", 188, 24},
    {"stationTable", 222, 174},
    {"removeStationButton", 402, 32},
    {"moveStationUpButton", 402, 32},
    {"moveStationDownButton", 402, 32},
    {"travel", 444, 24},
    {"routeEndpointField", 472, 26},
    {"status", 508, 48},
    {"languageButton", 566, 32},
    {"downloadButton", 566, 32},
    {"credit", 608, 28},
};

// The texts of the program that are sentences, from the translators' file.
QStringList programSentences() {
    QFile file(QStringLiteral(PO_FOLDER "/program/en.po"));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no " PO_FOLDER "/program/en.po");
    static const QRegularExpression row(u"^msgid ((?:\".*\"\n)+)"_s,
                                        QRegularExpression::MultilineOption);
    QStringList sentences;
    const QString content = QString::fromUtf8(file.readAll());
    for (auto rows = row.globalMatch(content); rows.hasNext();) {
        QString text = rows.next().captured(1);
        text.remove(u"\"\n\""_s).chop(2);
        text.remove(0, 1);
        text.replace(u"\\n"_s, u"\n"_s);
        const bool isWhole = text.endsWith(u'.') || text.endsWith(u'…');
        if (isWhole && !text.contains(u'%'))
            sentences += text;
    }
    return sentences;
}

// The font that a text of one script is really drawn with.
QString familyOf(const QString& text, const QFont& font) {
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    return runs.size() == 1 ? runs.first().rawFont().familyName() : QString();
}

struct Window {
    NXImportApp::Mode mode;
    QSize size;
};

class FitTest : public SearchWindowTest, public testing::WithParamInterface<Window> {
protected:
    void SetUp() override {
        SearchWindowTest::SetUp();
        start(GetParam().mode);
        resizeContent(GetParam().size);
    }

    static bool isRoute() { return GetParam().mode == Mode::Route; }

    // Measures everything that can be seen, and keeps a picture of it.
    void look(const QString& state) {
        SCOPED_TRACE(state.toStdString());
        settle();
        expectRows();
        expectEverythingFits(window()->centralWidget());
        expectNoOverlap();
        keepPicture(state);
    }

private:
    void expectRow(const Row& row) const {
        const QRect area = place(row.name);
        EXPECT_EQ(area.top(), row.top) << row.name;
        EXPECT_EQ(area.height(), row.height) << row.name;
    }

    void expectRows() const {
        for (const Row& row : commonRows)
            expectRow(row);
        for (const Row& row : isRoute() ? std::span<const Row>(routeRows) : placeRows)
            expectRow(row);
    }

    static void expectEverythingFits(QWidget* parent) {
        for (const look::Label* label : shown<look::Label>(parent))
            expectFits(label);
        for (const look::Button* button : shown<look::Button>(parent))
            EXPECT_FALSE(button->isElided()) << button->title().toStdString();
        for (look::Segments* segments : shown<look::Segments>(parent))
            EXPECT_GE(segments->width(), segments->sizeHint().width());
        for (const QCheckBox* box : shown<QCheckBox>(parent))
            EXPECT_GE(box->width(), box->sizeHint().width()) << box->text().toStdString();
        for (look::PopUp* popUp : shown<look::PopUp>(parent))
            for (int i = 0; i < popUp->count(); ++i)
                expectOneLine(popUp->itemText(i), popUp->font(), popUp->textRectangle().width());
        for (const look::Field* field : shown<look::Field>(parent))
            expectOneLine(field->placeholderText(), field->font(), field->width() - 2 * 11);
    }

    // The one caption that the design lets give way; it then says its whole text as a tooltip.
    static bool mayGiveWay(const look::Label* label) {
        return label->text() == NXLocal(u"Routingdienst · eigene HTTPS-Adresse optional"_s);
    }

    static void expectFits(const look::Label* label) {
        if (!mayGiveWay(label))
            EXPECT_FALSE(label->isElided()) << label->text().toStdString();
        else
            EXPECT_GE(label->width(), 80) << "next to nothing is left of the caption";
    }

    static void expectOneLine(const QString& text, const QFont& font, int room) {
        const look::Line line = look::fitLine(text, font, room);
        EXPECT_FALSE(line.isElided) << text.toStdString() << ": " << line.width;
    }

    void expectNoOverlap() const {
        QList<const QWidget*> controls;
        const auto add = [&](const auto& found) {
            for (const QWidget* each : found) {
                // The text of an empty list lies on its list.
                if (each->objectName() != "placeholder"_L1 && each->window() == window())
                    controls += each;
            }
        };
        add(shown<look::Label>(window()));
        add(shown<look::Button>(window()));
        add(shown<look::Segments>(window()));
        add(shown<look::Field>(window()));
        add(shown<look::PopUp>(window()));
        add(shown<look::PlaceList>(window()));
        add(shown<QCheckBox>(window()));
        const QRect content = window()->centralWidget()->rect().adjusted(22, 16, -22, 0);
        for (qsizetype i = 0; i < controls.size(); ++i) {
            EXPECT_TRUE(content.contains(place(controls[i]))) << nameOf(controls[i]);
            for (qsizetype j = i + 1; j < controls.size(); ++j)
                EXPECT_FALSE(place(controls[i]).intersects(place(controls[j])))
                    << nameOf(controls[i]) << " and " << nameOf(controls[j]);
        }
    }

    static std::string nameOf(const QWidget* widget) {
        const auto* label = qobject_cast<const look::Label*>(widget);
        return (label != nullptr ? label->text() : widget->objectName()).toStdString();
    }

    void keepPicture(const QString& state) const {
        const QString folder = qEnvironmentVariable("FIT_PICTURES");
        if (folder.isEmpty())
            return;
        const QPixmap picture = window()->grab();
        ASSERT_TRUE(QDir().mkpath(folder));
        const QString name = u"%1-%2-%3-%4.png"_s.arg(
            QString::fromUtf8(programLanguage.stored), isRoute() ? u"route"_s : u"place"_s,
            QString::number(GetParam().size.width()), state);
        ASSERT_TRUE(picture.save(QDir(folder).filePath(name)));
    }
};

TEST_P(FitTest, idle_searching_and_results) {
    look(u"1-idle"_s);
    geocoder.behave({{u"hang"_s, true}});
    search(u"Berlin"_s);
    look(u"2-searching"_s);
    click(button("cancelButton"));
    look(u"3-search-cancelled"_s);
    geocoder.reset();
    findPlaces(GetParam().mode);
    look(u"4-chosen"_s);
}

TEST_P(FitTest, importing_and_done) {
    findPlaces(GetParam().mode);
    const TemporaryFolder folder;
    importer->useScript(waitingTool(folder / "gate"));
    click(button("downloadButton"));
    look(u"5-importing"_s);
    ASSERT_EVENTUALLY(std::filesystem::exists(folder / "gate.started"));
    click(button("cancelButton"));
    look(u"6-stopping"_s);
    write(folder / "gate", "");
    ASSERT_EVENTUALLY(!isBusy());
    importer->useStandIn();
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(!isBusy());
    ASSERT_TRUE(button("finderButton")->isVisible());
    look(u"7-done"_s);
}

TEST_P(FitTest, failed) {
    findPlaces(GetParam().mode);
    importer->useScript("exit 1");
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(alert() != nullptr);
    look(u"8-alert"_s);
    closeAlert();
    look(u"9-failed"_s);
}

TEST_P(FitTest, language_dialog) {
    click(button("languageButton"));
    look(u"language"_s);
    click(alert()->prominentButton());
    settle();
    look(u"language-saved"_s);
    closeAlert();
}

// Sentences that only a rare failure shows fit the status line as well.
TEST_P(FitTest, every_sentence_of_the_program_fits_the_status_line) {
    auto* line = control<look::Label>("status");
    const QStringList sentences = programSentences();
    EXPECT_GT(sentences.size(), 60);
    for (const QString& german : sentences) {
        line->setText(NXLocal(german));
        settle();
        EXPECT_FALSE(line->isElided()) << line->text().toStdString();
        EXPECT_EQ(line->height(), 48) << line->text().toStdString();
    }
}

// "直" is written differently in each: with the fonts that ./run installs, the family tells.
TEST(Letters, are_written_as_the_language_writes_them) {
    const QHash<QByteArray, QString> families{{"zh-Hans", u"Noto Sans CJK SC"_s},
                                              {"ja", u"Noto Sans CJK JP"_s},
                                              {"ko", u"Noto Sans CJK KR"_s}};
    if (!families.contains(programLanguage.stored))
        GTEST_SKIP() << "this language shares no letters";
    EXPECT_EQ(familyOf(u"直"_s, look::font(13)), families.value(programLanguage.stored));
    EXPECT_EQ(familyOf(u"Norvaxel"_s, look::font(13)), QFontInfo(look::fontForNames(13)).family())
        << "Latin letters stay the desktop's";
}

INSTANTIATE_TEST_SUITE_P(Windows, FitTest,
                         testing::Values(Window{NXImportApp::Mode::Place, natural},
                                         Window{NXImportApp::Mode::Place, least},
                                         Window{NXImportApp::Mode::Route, natural},
                                         Window{NXImportApp::Mode::Route, least}));

} // namespace
