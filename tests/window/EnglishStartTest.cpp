// The window in English: every text is looked up, but for one that stays German.

#include "SearchWindowTest.h"
#include "localization/NXLocal.h"

#include <QDirIterator>
#include <QMenu>
#include <QMenuBar>

const ProgramLanguage programLanguage{"en", "fr"};

namespace {

class EnglishStartTest : public SearchWindowTest {
protected:
    // Everything that the window shows, hides for now or says.
    QStringList texts() const {
        QStringList all{window()->windowTitle(), field("query")->placeholderText()};
        for (const look::Label* label : window()->findChildren<look::Label*>())
            all += label->text();
        for (const look::Button* button : window()->findChildren<look::Button*>())
            all += button->title();
        for (const QRadioButton* segment : window()->findChildren<QRadioButton*>())
            all += segment->text();
        for (const QCheckBox* box : window()->findChildren<QCheckBox*>())
            all += box->text();
        for (const look::PopUp* popUp : window()->findChildren<look::PopUp*>())
            for (int i = 0; i < popUp->count(); ++i)
                all += popUp->itemText(i);
        for (const QAction* menu : window()->menuBar()->actions()) {
            all += menu->text();
            for (const QAction* item : menu->menu()->actions())
                all += item->text();
        }
        for (QWidget* each : window()->findChildren<QWidget*>())
            all += {each->toolTip(),
                    QAccessible::queryAccessibleInterface(each)->text(QAccessible::Name)};
        all.removeAll(QString());
        all.removeDuplicates();
        return all;
    }
};

// A German text that was not looked up would be found in the catalogue now.
TEST_F(EnglishStartTest, every_text_is_translated_but_for_the_kind_of_travel) {
    for (const Mode mode : {Mode::Place, Mode::Route}) {
        start(mode);
        const QStringList all = texts();
        EXPECT_GT(all.size(), 50);
        for (const QString& each : all)
            EXPECT_EQ(localization::NXLocal(each), each);
        // One of each kind of place, some of them made of several parts.
        for (const QString& each :
             {u"Norvaxel 3D · Places and Routes"_s, u"Stops · 0 / 32"_s,
              u"City, place or address worldwide"_s, u"Reiseart"_s, u"Car"_s, u"Quit Norvaxel"_s,
              u"Cut"_s, u"1.2 km"_s, u"Choose a language and save it locally"_s})
            EXPECT_TRUE(all.contains(each)) << each.toStdString();
        for (const QString& each : all)
            EXPECT_FALSE(each.startsWith(u"Stationen"_s)) << each.toStdString();
        end();
    }
}

TEST_F(EnglishStartTest, the_data_service_is_recorded_as_it_is_called_here) {
    importer->useStandIn();
    start();
    findPlaces(Mode::Place);
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(!isBusy());
    QDirIterator records(supportFolder().path(), {u"import-choice.json"_s}, QDir::Files,
                         QDirIterator::Subdirectories);
    const std::string record = contentOf(records.next().toStdString());
    EXPECT_NE(record.find("\"source\": \"OpenStreetMap directly\""), std::string::npos) << record;
}

// The toolkit's own would speak the desktop's language.
TEST_F(EnglishStartTest, the_menu_of_a_field_is_the_menu_bars) {
    start(Mode::Route);
    QMenu* edit = window()->menuBar()->actions().at(1)->menu();
    for (const char* name : {"query", "routeEndpointField"}) {
        QContextMenuEvent asked(QContextMenuEvent::Mouse, {5, 5},
                                field(name)->mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(field(name), &asked);
        EXPECT_EQ(QApplication::activePopupWidget(), edit) << name;
        EXPECT_TRUE(field(name)->hasFocus());
        edit->close();
    }
}

} // namespace
