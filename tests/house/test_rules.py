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
    def of(self, subject):
        return rules.commits({}, f"0a1b2c3 {subject}\n")

    def test_an_area_and_what_to_do_are_right(self):
        for subject in ("Look: Draw a ring", "Black box: Say how", "House: Pass it on", "Window: Focus the field"):
            self.assert_faults(self.of(subject))

    def test_another_form_is_wrong(self):
        for subject in ("Draw a ring", "Look: draw a ring", "look: Draw a ring", "Look: Draw a ring.", "Look:Draw it"):
            self.assert_faults(self.of(subject), "0a1b2c3: not `Area:")

    def test_what_is_no_imperative_is_wrong(self):
        for word in ("Added", "Adds", "Adding", "Stations,"):
            self.assert_faults(self.of(f"Look: {word} a ring"), "is no imperative")

    def test_72_columns_are_right_and_73_wrong(self):
        self.assert_faults(self.of("Look: Draw " + 61 * "x"))
        self.assert_faults(self.of("Look: Draw " + 62 * "x"), "73 columns")

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

    def of(self, **changes):
        files = self.FILES | {changes.get("add", "jobs/Log.cpp"): "", rules.UNTESTED: changes.get("table", self.FILES[rules.UNTESTED])}
        files.pop(changes.get("remove"), None)
        return rules.tests(files)

    def test_a_test_or_a_reason_is_right(self):
        self.assert_faults(self.of())
        self.assert_faults(self.of(add="bench/start.cpp"))

    def test_neither_test_nor_reason_is_wrong(self):
        self.assert_faults(self.of(remove="tests/jobs/LogTest.cpp"), "jobs/Log.cpp: no tests/jobs/LogTest.cpp")
        self.assert_faults(self.of(add="app/Menu.cpp"), "app/Menu.cpp: no tests/app/MenuTest.cpp")

    def test_a_test_and_a_reason_are_wrong(self):
        self.assert_faults(self.of(add="tests/look/RingTest.cpp"), "untested.tsv:1: look/style/Ring.cpp has a test")

    def test_a_reason_for_nothing_is_wrong(self):
        self.assert_faults(self.of(remove="look/style/Ring.cpp"), "untested.tsv:1: look/style/Ring.cpp is not there")

    def test_a_reason_must_be_said_and_its_test_be_there(self):
        self.assert_faults(self.of(table="look/style/Ring.cpp\t \n"), "without a reason")
        self.assert_faults(self.of(remove="tests/look/AllTest.cpp"), "untested.tsv:1: tests/look/AllTest.cpp is not there")


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

    def of(self, name="", more="", instead=None):
        changed = {name: more + self.FILES.get(name, "") if instead is None else instead} if name else {}
        return rules.includes(self.FILES | changed, MODULES)

    def test_a_house_in_order_is_right(self):
        self.assert_faults(self.of())

    def test_an_include_of_what_is_not_linked_is_wrong(self):
        self.assert_faults(self.of("platform/Fd.h", '\n#include "jobs/Log.h"\n'), "platform/Fd.h:2: platform does not link jobs")
        self.assert_faults(self.of("localization/Text.h", '#include "platform/Fd.h"\n'), "localization does not link platform")
        self.assert_faults(self.of("jobs/Log.h", '#include "localization/Words.h"\n'), "jobs does not link nxui")
        self.assert_faults(self.of("look/style/Ring.h", '#include "localization/Text.h"\n'),
                           "Ring.cpp:1: does not include its own", "Ring.h:1: look does not link localization")

    def test_a_link_of_what_is_not_included_is_wrong(self):
        self.assert_faults(self.of("jobs/Log.cpp", instead='#include "jobs/Log.h"\n#include "platform/Fd.h"\n'),
                           "jobs/CMakeLists.txt:1: jobs links localization and includes nothing")
        self.assert_faults(self.of("platform/Queue.cpp", instead="#include <QString>\n"), "platform links Threads::Threads and")
        self.assert_faults(self.of("look/style/Ring.cpp", instead="#include <QPainter>\n"), "look links Qt6::Widgets and")

    def test_a_link_upwards_or_sideways_is_wrong_though_it_is_used(self):
        link = "norvaxel_floor(look SOURCES style/Ring.cpp LINKS Qt6::Widgets platform)\n"
        files = self.FILES | {"look/CMakeLists.txt": link, "look/style/Wait.h": '#include "platform/Fd.h"\n'}
        self.assert_faults(rules.includes(files, MODULES), "look/CMakeLists.txt:1: look may not stand on platform")

    def test_a_module_of_qt_that_is_not_linked_is_wrong(self):
        self.assert_faults(self.of("jobs/Log.h", "#include <QPainter>\n"), "jobs/Log.h:1: jobs does not link Qt6::Gui")
        self.assert_faults(self.of("jobs/Log.h", "#include <QSqlQuery>\n"), "jobs/Log.h:1: jobs does not link what it")

    def test_nxui_stands_on_the_standard_library_and_posix_alone(self):
        self.assert_faults(self.of("localization/Words.h", "#include <QString>\n"), "nxui does not link Qt6::Core")
        self.assert_faults(self.of("localization/Words.h", "#include <boost/any.hpp>\n"), "standard library and POSIX alone: boost")
        self.assert_faults(self.of("localization/Words.h", '#include "localization/Text.h"\n'), "nxui does not link localization")

    def test_the_own_header_comes_first(self):
        self.assert_faults(self.of("jobs/Log.cpp", "#include <QString>\n"), "jobs/Log.cpp:1: does not include its own header")

    def test_an_include_names_its_floor(self):
        self.assert_faults(self.of("platform/Queue.cpp", '#include "Fd.h"\n'), "platform/Queue.cpp:1: no header of a floor: Fd.h")

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
    def of(self, line, name="tests/a.cpp"):
        return rules.style({name: f"\n{line}\n"})

    def test_what_the_house_writes_is_right(self):
        for line in ("int(x)", "static_cast<Kind>(x)", "static_cast<unsigned long long>(x)", "QStringLiteral(FOLDER)",
                     'u"a"_s', '"a"_L1', "QLatin1StringView(name)"):
            self.assert_faults(self.of(line))

    def test_what_it_does_not_write_is_wrong(self):
        for kind in ("int", "qsizetype", "std::size_t", "qint64", "std::uint8_t", "char", "double", "quint32"):
            self.assert_faults(self.of(f"static_cast<{kind}>(x)"), "tests/a.cpp:2: a number becomes")
        self.assert_faults(self.of('QStringLiteral("a")'), "a text literal")
        self.assert_faults(self.of('QLatin1String("a")'), "a literal of ASCII")
        self.assert_faults(self.of('QLatin1StringView("a")'), "a literal of ASCII")

    def test_a_header_stands_in_the_namespace_of_its_floor(self):
        self.assert_faults(self.of("namespace jobs {", "jobs/Log.h"))
        self.assert_faults(self.of("namespace nx {", "jobs/Log.h"))
        self.assert_faults(self.of("namespace look {", "jobs/Log.h"), "jobs/Log.h:1: not in the namespace")


class Painter(RuleTest):
    def test_one_file_paints_the_controls_and_no_other(self):
        paints = "w.query->setEnabled(on);\n"
        self.assert_faults(rules.painter({"app/ControlPainter.cpp": paints, "look/A.cpp": paints}))
        for line in (paints, "window_->table.hide();\n", "field->setReadOnly(true);\n"):
            self.assert_faults(rules.painter({"app/A.cpp": line}), "app/A.cpp:1: only ControlPainter")


class Faults(RuleTest):
    def test_a_fault_that_no_longer_fits_is_named(self):
        self.assert_faults(rules.faults({}, "2 faults, 0 STALE\n"))
        self.assert_faults(rules.faults({}, "STALE     app/a   app/A.cpp\n2 faults, 1 STALE\n"), "app/a")

    def test_silence_is_wrong(self):
        self.assert_faults(rules.faults({}, ""), "says nothing")


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
