/* SPDX-License-Identifier: Apache-2.0 */
/* The escapers, the redaction and the geometry of the charts of `algdata report`. */
#include <gtest/gtest.h>

#include "report/html.h"
#include "report/redaction.h"
#include "report/svg/plot.h"
#include "report/svg/scale.h"
#include "report/svg/tree.h"

namespace algdata
{
namespace
{

using svg::DotLayout;
using svg::DotPlot;
using svg::Line;
using svg::roundTicks;
using svg::Scale;
using svg::spread;
using svg::Tree;
using svg::TreeCard;
using svg::TreeLayout;

using Numbers = std::vector<double>;

/* ---- Escapers ------------------------------------------------------------------ */

TEST(Visible, KeepsTextInUtf8)
{
    EXPECT_EQ(visible("RE1 K\u00fcche \u2713"), "RE1 K\u00fcche \u2713");
}

TEST(Visible, ShowsControlCharactersAsBytes)
{
    EXPECT_EQ(visible(std::string_view("a\0b\n\x1b\x7f", 6)), "a\\x00b\\x0a\\x1b\\x7f");
}

TEST(Visible, ShowsBytesThatAreNotUtf8)
{
    EXPECT_EQ(visible("\xff"), "\\xff");
    EXPECT_EQ(visible("\xc3"), "\\xc3");                   /* cut */
    EXPECT_EQ(visible("\xc0\xbc"), "\\xc0\\xbc");          /* "<" in two bytes */
    EXPECT_EQ(visible("\xed\xa0\x80"), "\\xed\\xa0\\x80"); /* a surrogate */
    EXPECT_EQ(visible("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");
}

TEST(Visible, ShowsMarksThatReorderOrHideText)
{
    EXPECT_EQ(visible("\u202egnp"), "\\u{202e}gnp");
    EXPECT_EQ(visible("\u2028\u200b\ufeff\u0085"), "\\u{2028}\\u{200b}\\u{feff}\\u{0085}");
}

TEST(TextEscaped, LeavesNoMarkup)
{
    EXPECT_EQ(textEscaped("<b>&amp;</b>"), "&lt;b&gt;&amp;amp;&lt;/b&gt;");
}

TEST(AttributeEscaped, LeavesNoQuotationMark)
{
    EXPECT_EQ(attributeEscaped("\"'<&>"), "&quot;&#39;&lt;&amp;&gt;");
}

TEST(JsonEscaped, CanStandInAScriptElement)
{
    EXPECT_EQ(jsonEscaped("</script><!--<script>&"),
              "\"\\u003c/script\\u003e\\u003c!--\\u003cscript\\u003e\\u0026\"");
    EXPECT_EQ(jsonEscaped("a\"b\\"), "\"a\\\"b\\\\\"");
}

TEST(JsonEscaped, ShowsHiddenCharactersAsText)
{
    EXPECT_EQ(jsonEscaped("\u2028\n"), "\"\\\\u{2028}\\\\x0a\"");
}

TEST(Coordinate, HasAtMostOneDecimal)
{
    EXPECT_EQ(coordinate(12), "12");
    EXPECT_EQ(coordinate(12.34), "12.3");
    EXPECT_EQ(coordinate(-0.04), "0");
}

TEST(Html, ClosesWhatItOpens)
{
    Html html;
    {
        const Html::Element list = html.in("ul", {{"class", "a\"b"}});
        html.element("li", "x<y");
    }
    EXPECT_EQ(html.all(), "<ul class=\"a&quot;b\"><li>x&lt;y</li>\n</ul>\n");
}

TEST(Html, RewritesTextsAndAttributes)
{
    Html html([](const std::string& text) { return text == "secret" ? "M1" : text; });
    html.element("a", {{"href", "secret"}}, "secret");
    EXPECT_EQ(html.all(), "<a href=\"M1\">M1</a>");
    EXPECT_EQ(html.json("secret"), "\"M1\"");
}

/* ---- Redaction ------------------------------------------------------------------ */

TEST(Redaction, NamesMacsInTheOrderOfTheirFirstUse)
{
    Redaction redaction;
    EXPECT_EQ(redaction.of("0a4e00000002 to 0a4e00000001"), "M1 to M2");
    EXPECT_EQ(redaction.of("score_re_0A4E00000001.txt"), "score_re_M2.txt");
    EXPECT_EQ(redaction.of("0a:4e:00:00:00:02"), "M1");
}

TEST(Redaction, ReplacesDamagedMacs)
{
    Redaction redaction;
    EXPECT_EQ(redaction.of("`0a4e0000000` and `0a4e000000011`"), "`M1` and `M2`");
    EXPECT_EQ(redaction.of("0a4e0000"), "M3");
}

TEST(Redaction, KeepsNumbersWordsAndTheMacOfNoDevice)
{
    Redaction redaction;
    EXPECT_EQ(redaction.of("1735690800 decade 000000000000"), "1735690800 decade 000000000000");
}

/* ---- Scales ---------------------------------------------------------------------- */

TEST(Scale, MapsItsEndsAndClampsTheRest)
{
    const Scale scale = {0, 50, 100, 200};
    EXPECT_EQ(scale.at(0), 100);
    EXPECT_EQ(scale.at(25), 150);
    EXPECT_EQ(scale.at(50), 200);
    EXPECT_EQ(scale.at(60), 200);
}

TEST(Scale, CanRunUpwards)
{
    const Scale scale = {0, 10, 200, 100};
    EXPECT_EQ(scale.at(10), 100);
}

TEST(Scale, WithoutAnExtentHasOnePosition)
{
    const Scale scale = {5, 5, 100, 200};
    EXPECT_EQ(scale.at(5), 100);
}

TEST(RoundTicks, EncloseTheValues)
{
    EXPECT_EQ(roundTicks(0, 47), (Numbers{0, 10, 20, 30, 40, 50}));
    EXPECT_EQ(roundTicks(0, 1922), (Numbers{0, 500, 1000, 1500, 2000}));
    EXPECT_EQ(roundTicks(-23.5, -20.5), (Numbers{-24, -23, -22, -21, -20}));
}

TEST(RoundTicks, OfNothingAreZeroAndOne)
{
    EXPECT_EQ(roundTicks(0, 0), (Numbers{0, 1}));
}

TEST(RoundTicks, CanBeWholeNumbers)
{
    EXPECT_EQ(roundTicks(0, 2, true), (Numbers{0, 1, 2}));
}

TEST(NumberText, HasNoNeedlessDigits)
{
    EXPECT_EQ(svg::numberText(1000), "1000");
    EXPECT_EQ(svg::numberText(14.5), "14.5");
    EXPECT_EQ(svg::numberText(0.1512), "0.1512");
    EXPECT_EQ(svg::numberText(-20.49984), "-20.4998");
    EXPECT_EQ(svg::numberText(-0.00001), "0");
}

TEST(Spread, MovesLabelsApartInTheirOrder)
{
    EXPECT_EQ(spread({20, 10, 12}, 15, 0, 100), (Numbers{40, 10, 25}));
}

TEST(Spread, StaysAboveTheEnd)
{
    EXPECT_EQ(spread({95, 100}, 15, 0, 100), (Numbers{85, 100}));
}

TEST(SpreadOf, HasQuartilesBetweenSamples)
{
    const svg::Spread spread = svg::spreadOf({4, 1, 3, 2});
    EXPECT_EQ(spread.least, 1);
    EXPECT_EQ(spread.lowerQuartile, 1.75);
    EXPECT_EQ(spread.median, 2.5);
    EXPECT_EQ(spread.upperQuartile, 3.25);
    EXPECT_EQ(spread.greatest, 4);
}

TEST(StepOf, IsWithinTheSteps)
{
    EXPECT_EQ(svg::stepOf(0, 100, 5), 0);
    EXPECT_EQ(svg::stepOf(40, 100, 5), 2);
    EXPECT_EQ(svg::stepOf(255, 100, 5), 4);
    EXPECT_EQ(svg::stepOf(1, 0, 5), 0);
}

/* ---- Charts ----------------------------------------------------------------------- */

TEST(Dodges, MoveMarksOfEqualValuesApart)
{
    EXPECT_EQ(svg::dodges({10, 30, 10, 10}), (Numbers{0, 0, -7, 7}));
}

TEST(DotLayout, HasALinePerRow)
{
    DotPlot plot;
    plot.rows.resize(3);
    plot.rows[1].marks.push_back({40, svg::Shape::Circle, false, ""});
    const DotLayout layout = layoutOf(plot);
    EXPECT_EQ(layout.ticks.back(), 40);
    EXPECT_EQ(layout.laneOf(1) - layout.laneOf(0), layout.rowHeight);
    EXPECT_GT(layout.height, layout.laneOf(2));
    EXPECT_GT(layout.width, layout.x.end);
}

TEST(DotLayout, KeepsTheLabelsAboveTheMarks)
{
    DotPlot plot;
    plot.rows.resize(2);
    const DotLayout layout = layoutOf(plot);
    const double labelBottom = layout.laneOf(0) - 15;
    EXPECT_GT(labelBottom, layout.top + 10);       /* a label is 10 pixels high */
    EXPECT_LT(labelBottom, layout.laneOf(0) - 10); /* marks are moved up by 10 pixels at most */
}

TEST(SegmentsOf, EndAtGaps)
{
    const std::vector<svg::Segment> segments = segmentsOf(Line{"", {1, 2, std::nullopt, 3}});
    ASSERT_EQ(segments.size(), 2U);
    EXPECT_EQ(segments[0].first, 0U);
    EXPECT_EQ(segments[0].last, 1U);
    EXPECT_EQ(segments[1].first, 3U);
    EXPECT_EQ(segments[1].last, 3U);
}

TEST(SegmentsOf, EndWhereAllLinesStartAnew)
{
    const std::vector<svg::Segment> segments = segmentsOf(Line{"", {1, 2, 3}}, {2});
    ASSERT_EQ(segments.size(), 2U);
    EXPECT_EQ(segments[0].last, 1U);
    EXPECT_EQ(segments[1].first, 2U);
    EXPECT_EQ(segments[1].last, 2U);
}

TEST(Shortened, EndsWithAnEllipsis)
{
    EXPECT_EQ(svg::shortened("living room", 11), "living room");
    EXPECT_EQ(svg::shortened("living room", 7), "living\u2026");
    EXPECT_EQ(svg::shortened("\u00fc\u00fc\u00fc", 2), "\u00fc\u2026");
}

Tree treeOf(const std::vector<size_t>& fathers)
{
    Tree tree;
    for (const size_t father : fathers) {
        tree.cards.emplace_back();
        tree.cards.back().father = father;
    }
    return tree;
}

TEST(TreeLayout, PlacesChildrenBelowAndToTheRight)
{
    const TreeLayout layout = layoutOf(treeOf({SIZE_MAX, 0, 1, 0}));
    ASSERT_EQ(layout.boxes.size(), 4U);
    EXPECT_GT(layout.boxes[1].x, layout.boxes[0].x);
    EXPECT_GT(layout.boxes[2].x, layout.boxes[1].x);
    EXPECT_EQ(layout.boxes[3].x, layout.boxes[1].x);
    for (size_t i = 1; i < layout.boxes.size(); ++i)
        EXPECT_GE(layout.boxes[i].y, layout.boxes[i - 1].y + layout.boxes[i - 1].height);
    EXPECT_GE(layout.cellsAt, layout.boxes[2].x + layout.boxes[2].width);
}

TEST(TreeLayout, DoesNotGrowWiderWithoutEnd)
{
    std::vector<size_t> chain = {SIZE_MAX};
    for (size_t i = 0; i < 50; ++i)
        chain.push_back(i);
    EXPECT_LT(layoutOf(treeOf(chain)).width, 700);
}

TEST(TreeLayout, OfNothingIsEmpty)
{
    EXPECT_TRUE(layoutOf(Tree()).boxes.empty());
}

} // namespace
} // namespace algdata
