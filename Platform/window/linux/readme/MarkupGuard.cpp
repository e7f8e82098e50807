#include "Platform/window/linux/readme/MarkupGuard.h"

#include <QStringView>
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "Platform/window/linux/readme/DocumentLimits.h"

namespace halvorn {
namespace {

constexpr std::size_t kDeepest = 200;
constexpr int kMostTags = 10'000;
constexpr std::size_t kMostTagsInTags = 100'000;  // each counted once for each that it is in
constexpr int kMostImages = 200;
constexpr int kMostAttributes = 4'000;  // of one tag
constexpr int kMostSpannedCells = 400'000;
constexpr int kLargestSpan = 1'000;
constexpr int kMostRuleUses = 400'000;
constexpr int kMostMarks = 10'000;
constexpr int kMostMarksInParagraph = 1'000;
constexpr int kMostBrackets = 2'000;
constexpr int kDeepestMarkdown = 32;

using Names = std::array<QStringView, 16>;
// Without an end, or with one that is mostly left out: these nest only as deep as what surrounds them.
constexpr Names kFlat = {u"br", u"hr", u"img", u"input", u"meta", u"link", u"col", u"base",
                         u"p",  u"li", u"tr",  u"td",    u"th",   u"dt",   u"dd",  u"option"};
constexpr Names kBlocks = {u"p",  u"br", u"div", u"li", u"tr", u"h1", u"h2",    u"h3",
                           u"h4", u"h5", u"h6",  u"ul", u"ol", u"hr", u"table", u"blockquote"};

bool contains(const Names& names, QStringView name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

struct Tag {
  QString name;  // in small letters; empty for a comment or a declaration
  bool closes = false;
  qsizetype end = 0;  // the place after it
};

// The tag that begins at the "<"; its end is that of the text when it is not closed.
Tag tagAt(const QString& html, qsizetype at) {
  Tag tag;
  if (QStringView(html).sliced(at).startsWith(u"<!--")) {
    const qsizetype close = html.indexOf(QStringLiteral("-->"), at + 4);
    tag.end = close < 0 ? html.size() : close + 3;
    return tag;
  }
  qsizetype i = at + 1;
  if (i < html.size() && html.at(i) == u'/') {
    tag.closes = true;
    ++i;
  }
  const qsizetype start = i;
  while (i < html.size() && html.at(i).isLetterOrNumber()) ++i;
  tag.name = html.mid(start, std::min<qsizetype>(i - start, 32)).toLower();
  const qsizetype close = html.indexOf(u'>', i);
  tag.end = close < 0 ? html.size() : close + 1;
  return tag;
}

// How many rows or columns more the cell takes: the numbers of all spans in the tag, since a tag may say it twice.
// A span that is written in another way than in digits counts as the largest.
int spansIn(QStringView tag, QStringView name) {
  int spans = 0;
  qsizetype at = tag.indexOf(name, 0, Qt::CaseInsensitive);
  for (; at >= 0; at = tag.indexOf(name, at, Qt::CaseInsensitive)) {
    at += name.size();
    QStringView value = tag.sliced(at).trimmed();
    if (!value.startsWith(u'=')) continue;
    value = value.sliced(1).trimmed();
    if (value.startsWith(u'"') || value.startsWith(u'\'')) value = value.sliced(1);
    qsizetype digits = 0;
    while (digits < value.size() && digits < 4 && value.at(digits) >= u'0' && value.at(digits) <= u'9')
      ++digits;
    const int number = digits == 0 || digits == 4 ? kLargestSpan : value.first(digits).toInt();
    spans = std::min(spans + number, kLargestSpan);
  }
  return spans;
}

struct HtmlCounts {
  int tags = 0;
  int rows = 0;
  int columns = 0;
  int rules = 0;
  int images = 0;
  int items = 0;
  bool hasFewAttributes = true;
};

void count(QStringView html, const Tag& tag, QStringView inside, HtmlCounts& counts) {
  ++counts.tags;
  counts.hasFewAttributes = counts.hasFewAttributes && inside.count(u'=') <= kMostAttributes &&
                            inside.size() <= qsizetype{16} * kMostAttributes;
  if (tag.closes) return;
  if (tag.name == u"tr") ++counts.rows;
  if (tag.name == u"img") ++counts.images;
  if (tag.name == u"li") ++counts.items;
  if (tag.name == u"td" || tag.name == u"th") {
    counts.columns = std::min(counts.columns + 1 + spansIn(inside, u"colspan"), kMostSpannedCells);
    counts.rows = std::min(counts.rows + spansIn(inside, u"rowspan"), kMostSpannedCells);
  }
  if (tag.name != u"style") return;
  const qsizetype close = html.indexOf(u"</style", tag.end, Qt::CaseInsensitive);
  const QStringView sheet = html.sliced(tag.end, (close < 0 ? html.size() : close) - tag.end);
  counts.rules += static_cast<int>(sheet.count(u'{') + sheet.count(u','));
}

}  // namespace

bool isModestHtml(const QString& html) {
  HtmlCounts counts;
  // Also what stands in comments and in quotes: the toolkit may take it for a tag where this does not.
  for (qsizetype at = html.indexOf(u'<'); at >= 0; at = html.indexOf(u'<', at + 1)) {
    const Tag tag = tagAt(html, at);
    count(html, tag, QStringView(html).sliced(at, tag.end - at), counts);
    if (counts.tags > kMostTags || !counts.hasFewAttributes) return false;
  }
  const auto product = [](long long one, long long other) { return one * other; };
  return counts.images <= kMostImages && counts.items <= DocumentLimits::kMostListItems &&
         product(counts.rows + 1, counts.columns) <= kMostSpannedCells &&
         product(counts.rules, counts.tags) <= kMostRuleUses;
}

bool isShallowHtml(const QString& html) {
  std::vector<QString> open;
  int tables = 0;
  std::size_t inside = 0;
  for (qsizetype at = html.indexOf(u'<'); at >= 0; at = html.indexOf(u'<', at)) {
    const Tag tag = tagAt(html, at);
    at = tag.end;
    inside += open.size();
    if (inside > kMostTagsInTags) return false;
    if (tag.name.isEmpty() || contains(kFlat, tag.name)) continue;
    if (!tag.closes) {
      open.push_back(tag.name);
      tables += tag.name == u"table" ? 1 : 0;
      if (open.size() > kDeepest || tables > DocumentLimits::kDeepestTable) return false;
      continue;
    }
    // Closes the nearest of its name and what was left open inside it.
    const auto found = std::find(open.rbegin(), open.rend(), tag.name);
    if (found == open.rend()) continue;
    for (auto it = open.rbegin(); it != std::next(found); ++it) tables -= *it == u"table" ? 1 : 0;
    open.erase(std::next(found).base(), open.end());
  }
  return true;
}

QString textOfHtml(const QString& html) {
  QString text;
  qsizetype at = 0;
  while (at < html.size()) {
    const qsizetype start = html.indexOf(u'<', at);
    text += QStringView(html).sliced(at, (start < 0 ? html.size() : start) - at);
    if (start < 0) break;
    const Tag tag = tagAt(html, start);
    at = tag.end;
    if (!tag.closes && (tag.name == u"script" || tag.name == u"style" || tag.name == u"head")) {
      const qsizetype close = html.indexOf(QStringLiteral("</") + tag.name, at, Qt::CaseInsensitive);
      at = close < 0 ? html.size() : close;
    }
    if (contains(kBlocks, tag.name) && !text.endsWith(u'\n')) text += u'\n';
  }
  constexpr std::array<std::pair<const char*, const char*>, 5> kEntities = {
      {{"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&nbsp;", " "}, {"&amp;", "&"}}};
  for (const auto& [entity, sign] : kEntities) text.replace(QLatin1String(entity), QLatin1String(sign));
  return text.trimmed();
}

bool isShallowMarkdown(const QString& markdown) {
  int markers = 0;
  bool atStart = true;
  for (qsizetype i = 0; i < markdown.size(); ++i) {
    const QChar unit = markdown.at(i);
    if (unit == u'\n') {
      markers = 0;
      atStart = true;
    } else if (atStart && !unit.isSpace()) {
      const bool opens = unit == u'>' || unit == u'*' || unit == u'-' || unit == u'+' || unit.isDigit();
      if (opens && ++markers > kDeepestMarkdown) {
        // A rule or a long number is one line of signs and no nesting.
        const QStringView rest = QStringView(markdown).sliced(i);
        const qsizetype end = rest.indexOf(u'\n');
        const QStringView line = end < 0 ? rest : rest.first(end);
        if (!std::all_of(line.begin(), line.end(), [unit](QChar other) { return other == unit; }))
          return false;
      }
      atStart = opens || unit == u'.' || unit == u')';
    }
  }
  return true;
}

bool isModestMarkdown(const QString& markdown) {
  constexpr QStringView kSigns = u"*_`~<>&![]()|\\:#@";
  int marks = 0;
  int inParagraph = 0;
  int brackets = 0;
  int items = 0;
  for (const QStringView line : QStringView(markdown).tokenize(u'\n')) {
    const QStringView text = line.trimmed();
    int inLine = 0;
    for (const QChar unit : text) {
      inLine += kSigns.contains(unit) ? 1 : 0;
      brackets += unit == u'[' || unit == u']' || unit == u'<' ? 1 : 0;
    }
    marks += inLine;
    inParagraph = text.isEmpty() ? 0 : inParagraph + inLine;
    const bool opensItem =
        !text.isEmpty() && (QStringView(u"*-+").contains(text.front()) || text.front().isDigit());
    items += opensItem ? 1 : 0;
    if (text.count(u'|') > DocumentLimits::kMostColumns || inParagraph > kMostMarksInParagraph) return false;
  }
  return marks <= kMostMarks && brackets <= kMostBrackets && items <= DocumentLimits::kMostListItems;
}

}  // namespace halvorn
