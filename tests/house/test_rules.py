"""Each rule is seen to fail: by a small house that breaks it in one place, and by no other."""
import pathlib
import sys
import unittest
import unittest.mock

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import rules

MODULES = {"QString": "Qt6::Core", "QPainter": "Qt6::Gui", "QWidget": "Qt6::Widgets"}


class RuleTest(unittest.TestCase):
    def assert_faults(self, faults, *parts):
        """As many faults as there are parts, and each part in its fault."""
        self.assertEqual(len(faults), len(parts), faults)
        for fault, part in zip(faults, parts):
            self.assertIn(part, fault)


class Commits(RuleTest):
    def test_subjects_are_right_or_wrong(self):
        for what, *subjects in (
                (None, "Look: Draw a ring", "Black box: Say how", "House: Pass it on", "Window: Focus the field",
                 "Look: Draw " + 61 * "x"),
                ("0a1b2c3: not `Area:", "Draw a ring", "Look: draw a ring", "look: Draw a ring", "Look: Draw a ring.",
                 "Look:Draw it"),
                ("is no imperative", *(f"Look: {word} a ring" for word in ("Added", "Adds", "Adding", "Stations,"))),
                ("73 columns", "Look: Draw " + 62 * "x")):
            for subject in subjects:
                with self.subTest(subject):
                    self.assert_faults(rules.commits({}, f"0a1b2c3 {subject}\n"), *([what] if what else []))

    def test_every_commit_is_read(self):
        self.assert_faults(rules.commits({}, "1 Bad\n2 Look: Draw a ring\n3 Bad\n"), "1: not", "3: not")

    def test_the_commits_since_the_rule_are_read_and_of_a_short_history_all(self):
        for known, span in (("5d8d9f0\n", "5d8d9f0..HEAD"), ("", "HEAD")):
            answers = {"rev-parse": known, "log": "1 Bad\n"}
            with unittest.mock.patch.object(rules, "git", side_effect=lambda *asked: answers[asked[0]]) as git:
                self.assert_faults(rules.commits({}), "1: not")
                self.assertEqual(git.call_args.args[-1], span)


class Tests(RuleTest):
    FILES = {"jobs/Log.cpp": "", "look/style/Ring.cpp": "", "tests/jobs/LogTest.cpp": "", "tests/look/AllTest.cpp": "",
             rules.UNTESTED: "look/style/Ring.cpp\tseen in tests/look/AllTest.cpp\n"}

    def test_each_source_has_a_test_or_a_reason_and_not_both(self):
        for change, *wrong in (
                ({},), ({"bench/start.cpp": ""},),
                ({"tests/jobs/LogTest.cpp": None}, "jobs/Log.cpp: no tests/jobs/LogTest.cpp"),
                ({"app/Menu.cpp": ""}, "app/Menu.cpp: no tests/app/MenuTest.cpp"),
                ({"tests/look/RingTest.cpp": ""}, "untested.tsv:1: look/style/Ring.cpp has a test"),
                ({"look/style/Ring.cpp": None}, "untested.tsv:1: look/style/Ring.cpp is not there"),
                ({rules.UNTESTED: "look/style/Ring.cpp\t \n"}, "without a reason"),
                ({"tests/look/AllTest.cpp": None}, "untested.tsv:1: tests/look/AllTest.cpp is not there")):
            with self.subTest(change):
                files = {name: text for name, text in (self.FILES | change).items() if text is not None}
                self.assert_faults(rules.tests(files), *wrong)


class Includes(RuleTest):
    FILES = {
        "localization/CMakeLists.txt": "norvaxel_floor(nxui SOURCES Words.cpp ${made}/Rows.cpp)\n"
                                       "norvaxel_floor(localization SOURCES Text.cpp LINKS nxui Qt6::Core)\n",
        "localization/Words.cpp": '#include "localization/Words.h"\n#include <fcntl.h>\n', "localization/Words.h": "#include <string>\n",
        "localization/Text.cpp": '#include "localization/Text.h"\n', "localization/Text.h": '#include <QString>\n#include "localization/Words.h"\n',
        "platform/CMakeLists.txt": "norvaxel_floor(platform\n    SOURCES Queue.cpp # all\n    LINKS Qt6::Core Threads::Threads)\n",
        "platform/Queue.cpp": "#include <QString>\n#include <thread>\n", "platform/Fd.h": "",
        "look/CMakeLists.txt": "norvaxel_floor(look SOURCES style/Ring.cpp LINKS Qt6::Widgets)\n",
        "look/style/Ring.cpp": "#include <QWidget>\n#include <QPainter>\n#include <QString>\n",
        "jobs/CMakeLists.txt": "norvaxel_floor(jobs SOURCES Log.cpp LINKS localization platform)\n",
        "jobs/Log.cpp": '#include "localization/Text.h"\n#include "platform/Fd.h"\n#include <QString>\n', "jobs/Log.h": "",
    }
    FILES["jobs/Log.cpp"] = '#include "jobs/Log.h"\n' + FILES["jobs/Log.cpp"]

    def test_what_is_included_is_linked_and_what_is_linked_included(self):
        self.assert_faults(rules.includes(self.FILES, MODULES))
        for name, added, *wrong in (
                ("platform/Fd.h", '\n#include "jobs/Log.h"', "platform/Fd.h:2: platform does not link jobs"),
                ("localization/Text.h", '#include "platform/Fd.h"', "localization does not link platform"),
                ("jobs/Log.h", '#include "localization/Words.h"', "jobs does not link nxui"),
                ("look/style/Ring.h", '#include "localization/Text.h"',
                 "Ring.cpp:1: does not include its own", "Ring.h:1: look does not link localization"),
                ("jobs/Log.h", "#include <QPainter>", "jobs/Log.h:1: jobs does not link Qt6::Gui"),
                ("jobs/Log.h", "#include <QSqlQuery>", "jobs/Log.h:1: jobs does not link what it"),
                # nxui stands on the standard library and POSIX alone.
                ("localization/Words.h", "#include <QString>", "nxui does not link Qt6::Core"),
                ("localization/Words.h", "#include <boost/any.hpp>", "standard library and POSIX alone: boost"),
                ("localization/Words.h", '#include "localization/Text.h"', "nxui does not link localization"),
                ("jobs/Log.cpp", "#include <QString>", "jobs/Log.cpp:1: does not include its own header"),
                ("platform/Queue.cpp", '#include "Fd.h"', "platform/Queue.cpp:1: no header of a floor: Fd.h")):
            with self.subTest(name, added=added):
                files = self.FILES | {name: f"{added}\n{self.FILES.get(name, '')}"}
                self.assert_faults(rules.includes(files, MODULES), *wrong)
        for name, gone, wrong in (
                ("jobs/Log.cpp", '"localization/Text.h"', "jobs/CMakeLists.txt:1: jobs links localization and"),
                ("platform/Queue.cpp", "<thread>", "platform links Threads::Threads and"),
                ("look/style/Ring.cpp", "<QWidget>", "look links Qt6::Widgets and")):
            with self.subTest(name, gone=gone):
                files = self.FILES | {name: self.FILES[name].replace(f"#include {gone}\n", "")}
                self.assert_faults(rules.includes(files, MODULES), wrong)

    def test_a_link_upwards_or_sideways_is_wrong_though_it_is_used(self):
        link = "norvaxel_floor(look SOURCES style/Ring.cpp LINKS Qt6::Widgets platform)\n"
        files = self.FILES | {"look/CMakeLists.txt": link, "look/style/Wait.h": '#include "platform/Fd.h"\n'}
        self.assert_faults(rules.includes(files, MODULES), "look/CMakeLists.txt:1: look may not stand on platform")

    def test_the_modules_of_this_machine_are_found(self):
        self.assertEqual([rules.qt_modules().get(each) for each in MODULES], list(MODULES.values()))


class Links(RuleTest):
    FILES = {"README.md": "# The house\n\n[up](docs/a.md#two-words), [here](#the-house), [far](https://example.org/x)\n",
             "docs/a.md": "## `Two` words!\n[picture](a.png) [back](../README.md) [all](../docs)\n", "docs/a.png": ""}

    def test_links_that_lead_somewhere_are_right(self):
        self.assert_faults(rules.links(self.FILES))

    def test_a_link_that_leads_nowhere_is_wrong(self):
        for dead in ("b.png", "README.md", "../docs/b.md", "#three-words", "../README.md#house"):
            files = self.FILES | {"docs/a.md": f"## Two words\n[dead]({dead})\n"}
            self.assert_faults([each for each in rules.links(files) if "docs" in each], f"docs/a.md:2: leads nowhere: {dead}")


class Style(RuleTest):
    def test_lines_are_right_or_wrong(self):
        number = "tests/a.cpp:2: a number becomes"
        kinds = ("int", "qsizetype", "std::size_t", "qint64", "std::uint8_t", "char", "double", "quint32")
        for name, what, *lines in (
                ("tests/a.cpp", None, "int(x)", "static_cast<Kind>(x)", "static_cast<unsigned long long>(x)",
                 "QStringLiteral(FOLDER)", 'u"a"_s', '"a"_L1', "QLatin1StringView(name)"),
                ("tests/a.cpp", number, *(f"static_cast<{kind}>(x)" for kind in kinds)),
                ("tests/a.cpp", "a text literal", 'QStringLiteral("a")'),
                ("tests/a.cpp", "a literal of ASCII", 'QLatin1String("a")', 'QLatin1StringView("a")'),
                ("jobs/Log.h", None, "namespace jobs {", "namespace nx {"),
                ("jobs/Log.h", "jobs/Log.h:1: not in the namespace", "namespace look {")):
            for line in lines:
                with self.subTest(line):
                    self.assert_faults(rules.style({name: f"\n{line}\n"}), *([what] if what else []))


class Painter(RuleTest):
    def test_one_file_paints_the_controls_and_no_other(self):
        paints = "w.query->setEnabled(on);\n"
        self.assert_faults(rules.painter({"app/ControlPainter.cpp": paints, "look/A.cpp": paints}))
        for line in (paints, "window_->table.hide();\n", "field->setReadOnly(true);\n"):
            self.assert_faults(rules.painter({"app/A.cpp": line}), "app/A.cpp:1: only ControlPainter")

    def test_an_item_of_a_menu_is_no_control(self):
        menus = "item->setEnabled(on);\nlastItem->hide();\nw->setEnabled(on);\n"
        self.assert_faults(rules.painter({"app/Menus.cpp": menus}), "app/Menus.cpp:2", "app/Menus.cpp:3")


class Faults(RuleTest):
    def test_a_fault_that_no_longer_fits_is_named_and_silence_is_wrong(self):
        for report, *wrong in (("2 faults, 0 STALE\n",), ("", "says nothing"),
                               ("STALE     app/a   app/A.cpp\n2 faults, 1 STALE\n", "app/a")):
            self.assert_faults(rules.faults({}, report), *wrong)


class Words(RuleTest):
    def test_what_belongs_into_the_sources_is_right(self):
        for name, text in {"a.py": "a\n", "a.tsv": "a\t\n", "CMakeLists.txt": "\ta\n", "a.png": "", "b.py": "mktemp XXXXXX\n",
                           "a.md": "~/work/a, /home/ada/x\n", "docs/schemas/examples/a.json": "{}"}.items():
            self.assert_faults(rules.words({name: text}))

    def test_what_does_not_is_wrong(self):
        for what in ("/wor" + "k/a", "see /roo" + "t/b", "TO" + "DO", "FIX" + "ME: a", "// XX" + "X", "a ", "a\r", "\ta"):
            self.assert_faults(rules.words({"a.cpp": f"a\n{what}\n"}), "a.cpp:2: ")

    def test_a_file_ends_with_a_line_feed(self):
        self.assert_faults(rules.words({"a.md": "a\nb"}), "a.md: no line feed")


if __name__ == "__main__":
    unittest.main()
