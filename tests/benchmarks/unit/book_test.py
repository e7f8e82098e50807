#!/usr/bin/env python3
"""The arithmetic of the benchmark book: noise, verdicts, what has moved, tables, plots, and stores that cannot be read.

usage: book_test.py [NAME...]     the cases of these names, or all
"""
import json, pathlib, shutil, sys, tempfile, unittest
import xml.etree.ElementTree as xml

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parents[3]
sys.path[:0] = [str(ROOT / "benchmarks"), str(ROOT / "dev.d")]
import book, page, plots, rows as arithmetic  # noqa: E402
from plain_commands import plain  # noqa: E402


def row(ours, theirs, name="listing", **more):
    return arithmetic.Rows("process").add(name, "ms", ours, {"pgrep": theirs}, **more)


def document(found, commit="abc", quick=True):
    machine = {"processors": "2 x made up", "versions": {"coreutils": "9.1"}}
    return {"format": arithmetic.FORMAT, "commit": commit, "quick": quick, "date": "2026-01-02", "machine": machine, "rows": found}


class Book(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="halvorn-test-"))
        self.addCleanup(shutil.rmtree, self.folder)

    def unreadable(self, text):
        path = self.folder / "store.json"
        path.write_text(text)
        with self.assertRaises(arithmetic.Unreadable) as caught:
            arithmetic.read(str(path))
        self.assertIn(str(path), str(caught.exception))
        return str(caught.exception)

    def test_NoiseIsHowFarASingleTurnLiesFromTheMedian(self):
        self.assertEqual(arithmetic.noise_of([5, 5, 5]), 0)
        self.assertAlmostEqual(arithmetic.noise_of([9, 10, 11, 10]), 0.07413)
        self.assertAlmostEqual(arithmetic.noise_of([9, 10, 11, 10, 1000]), 0.14826, msg="one turn that was disturbed")
        self.assertEqual(arithmetic.noise_of([0, 0]), 0)

    def test_ARatioIsMadeOfTheTwoOfEachTurn(self):
        self.assertEqual(row([1, 20, 3], [2, 40, 6])["ratio"]["median"], 0.5)
        self.assertEqual(row([1, 20, 3], [2, 40, 6])["ratio"]["noise"], 0)
        self.assertEqual(row([1, 1, 1], [1, 2, 4])["ratio"]["median"], 0.5)

    def test_TheBestOfThePeersThatJudgeCountsInEachTurn(self):
        peers = {"a": [4, 2], "b": [2, 4], "ids alone": [1, 1]}
        found = arithmetic.Rows("process").add("x", "ms", [2, 2], peers, against=["a", "b"])
        self.assertEqual(found["ratio"]["median"], 1)
        self.assertEqual(arithmetic.Rows("process").add("x", "ms", [2, 2], peers)["ratio"]["median"], 2)

    def test_AGoalIsMetAtTheGoalUnlessToBeAheadIsWanted(self):
        self.assertEqual(row([5], [10], goal=0.5)["verdict"], "met")
        self.assertEqual(row([5], [10], goal=0.5, below=True)["verdict"], "missed")
        self.assertEqual(row([6], [10], goal=0.5)["verdict"], "missed")
        self.assertEqual(row([6], [10])["verdict"], "")

    def test_AGoalOfTheFigureItselfLooksAtNoPeer(self):
        rows = arithmetic.Rows("process")
        self.assertEqual(rows.add("idle", "wake-ups", [0.0], goal=0.0, goal_of="value")["verdict"], "met")
        self.assertEqual(rows.add("idle", "wake-ups", [0.1], goal=0.0, goal_of="value")["verdict"], "missed")

    def test_ARatioThatWasNotFoundMissesItsGoal(self):
        self.assertEqual(row([5], [0], goal=0.5)["verdict"], "missed")

    def test_WithinTheNoiseOfBothNothingHasMoved(self):
        before, now = row([10, 9, 11], [10, 10, 10]), row([11.5, 10, 13], [10, 10, 10])
        self.assertGreater(arithmetic.allowance(before, now), 0.15)
        self.assertEqual(arithmetic.change(before, now)[1], 0)

    def test_BeyondTheNoiseItHasBecomeBetterOrWorse(self):
        steady, slower = row([10, 10, 10], [10, 10, 10]), row([10.5, 10.5, 10.5], [10, 10, 10])
        self.assertEqual(arithmetic.change(steady, slower)[1], 1)
        self.assertEqual(arithmetic.change(slower, steady)[1], -1)

    def test_StepsOfLessThanThreePercentAreNoMove(self):
        self.assertEqual(arithmetic.change(row([100], [100]), row([102.9], [100]))[1], 0)
        self.assertEqual(arithmetic.change(row([100], [100]), row([103.2], [100]))[1], 1)

    def test_ASlowerMachineMovesNoRatio(self):
        self.assertEqual(arithmetic.change(row([10, 10], [20, 20]), row([100, 100], [200, 200]))[1], 0)

    def test_RowsWithoutPeersAreNotCompared(self):
        alone = arithmetic.Rows("process").add("idle", "wake-ups", [1.0])
        later = arithmetic.Rows("process").add("idle", "wake-ups", [9.0])
        self.assertEqual(arithmetic.compared([alone], [later]), [])

    def test_WhatHasMovedIsToldWithTheStoredCommit(self):
        before, now = document([row([10], [10])]), document([row([20], [10])], "def")
        self.assertEqual(book.moves(before, now), ["worse than at abc by 100%: process: listing"])
        self.assertEqual(book.moves(now, before), ["better than at def by 50%: process: listing"])
        self.assertEqual(book.moves(before, before), [])
        self.assertEqual(book.moves(None, now), [])

    def test_QuickRowsAreNotComparedWithWholeOnes(self):
        said = book.moves(document([row([10], [10])]), document([row([20], [10])], quick=False))
        self.assertEqual(len(said), 1)
        self.assertIn("nothing is compared", said[0])

    def test_AStoredRowThatIsNotMeasuredAnyMoreIsNamed(self):
        stored = document([row([10], [10]), row([1], [1], name="ends")])
        self.assertEqual(book.missing_rows(stored, document([row([10], [10])]), ["process"]), ["process: ends"])
        self.assertEqual(book.missing_rows(stored, document([row([10], [10])]), ["text"]), [])

    def test_TheStoreGivesBackWhatWasWritten(self):
        whole = document([row([10, 11], [10, 12], goal=1, below=True)])
        path = self.folder / "store.json"
        path.write_text(page.compact(whole))
        self.assertEqual(arithmetic.read(str(path)), whole)
        self.assertEqual(len([line for line in path.read_text().splitlines() if '"row":' in line]), 1)

    def test_WhatABenchmarkWroteIsReadLikeAStore(self):
        rows = arithmetic.Rows("process")
        rows.add("listing", "ms", [1.0], {"ps": [2.0]})
        rows.write(str(self.folder / "rows.json"))
        self.assertEqual(arithmetic.read(str(self.folder / "rows.json"))["rows"], rows.rows)

    def test_AStoreThatCannotBeReadSaysWhichAndWhy(self):
        self.assertIn("no JSON", self.unreadable("{"))
        self.assertIn("format", self.unreadable("[]"))
        self.assertIn("format", self.unreadable('{"format": 99, "rows": []}'))
        self.assertIn("row 1 is incomplete", self.unreadable(json.dumps({"format": arithmetic.FORMAT, "rows": []})))
        half = {"benchmark": "text", "row": "x"}
        self.assertIn("row 2 is incomplete",
                      self.unreadable(json.dumps({"format": arithmetic.FORMAT, "rows": [row([1], [1]), half]})))
        with self.assertRaisesRegex(arithmetic.Unreadable, "No such file"):
            arithmetic.read(str(self.folder / "nothing"))

    def test_TheTableHasEveryRowAndItsVerdict(self):
        found = [row([5, 5], [10, 10], goal=0.4), row([5], [0.01], name="other")]
        lines = page.table(found).splitlines()
        self.assertEqual(len(lines), 3)
        self.assertRegex(lines[1], r"^process +listing +5 ms +pgrep 10 +0\.50 ±0% +≤ 0\.4 +missed$")

    def test_ThePageTellsMachineVersionsGoalsAndCells(self):
        text = page.markdown(document([row([5], [10], name="a|b", goal=1, below=True)]), ["text", "process"])
        self.assertIn("- processors: 2 x made up", text)
        self.assertIn("coreutils 9.1", text)
        self.assertIn("1 rows, 1 goals met, 0 missed", text)
        self.assertIn("| a\\|b | 5 ms | pgrep 10 | 0.50 ±0% | < 1 | met |", text)
        self.assertNotIn("ICU, GLib", text, "a section without rows")

    def test_APlotHasADotForEachRatioInOrderOfTheScale(self):
        found = [row([2], [10], name="<quick>"), row([8], [10], name="slow", goal=0.5), arithmetic.Rows("process").add("idle", "x", [1])]
        tree = xml.fromstring(plots.svg("Title & more", found))
        dots = [each for each in tree.iter() if each.tag.endswith("circle")]
        self.assertEqual([each.get("class") for each in dots], ["dot", "missed"])
        self.assertLess(float(dots[0].get("cx")), float(dots[1].get("cx")))
        goals = [each for each in tree.iter() if each.get("class") == "goal"]
        self.assertEqual(len(goals), 1)
        self.assertLess(float(goals[0].get("x1")), float(dots[1].get("cx")))
        self.assertIn("prefers-color-scheme: dark", "".join(tree.itertext()))

    def test_WithoutARatioThereIsNoPlot(self):
        self.assertIsNone(plots.svg("Title", [arithmetic.Rows("process").add("idle", "x", [1])]))

    def test_ACommandLosesHeadersReadBeforehandAndNothingElse(self):
        words = ["c++", "-O0", "-fpch-preprocess", "-Winvalid-pch", "-include", "/b/cmake_pch.hxx", "-include", "own.h", "-c", "a.cpp"]
        self.assertEqual(plain(words), ["c++", "-O0", "-include", "own.h", "-c", "a.cpp"])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *(f"Book.test_{name}" for name in sys.argv[1:])])
