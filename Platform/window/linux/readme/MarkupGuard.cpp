#include "Platform/window/linux/readme/MarkupGuard.h"

#include <QStringView>
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace halvorn {
namespace {

constexpr std::size_t kDeepest = 200;
constexpr int kDeepestTable = 8;
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

}  // namespace

bool isShallowHtml(const QString& html) {
  std::vector<QString> open;
  int tables = 0;
  for (qsizetype at = html.indexOf(u'<'); at >= 0; at = html.indexOf(u'<', at)) {
    const Tag tag = tagAt(html, at);
    at = tag.end;
    if (tag.name.isEmpty() || contains(kFlat, tag.name)) continue;
    if (!tag.closes) {
      open.push_back(tag.name);
      tables += tag.name == u"table" ? 1 : 0;
      if (open.size() > kDeepest || tables > kDeepestTable) return false;
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

}  // namespace halvorn
