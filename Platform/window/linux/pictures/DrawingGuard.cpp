// What a drawing (svg) may contain before the renderer sees it.

#include <QHash>
#include <QXmlStreamReader>
#include <algorithm>
#include <vector>

#include "Platform/window/linux/pictures/ImageFormats.h"

namespace halvorn {
namespace {

constexpr qsizetype kLargestDrawing = 4LL * 1024 * 1024;
constexpr int kDeepest = 64;
constexpr long long kMostElements = 50'000;  // repetitions by <use> counted in full

// A part of the drawing that <use> can repeat: what stands in it itself, and the parts it takes in.
struct Part {
  long long elements = 0;
  std::vector<QString> repeats;  // ids named by <use>
  std::vector<int> children;     // parts inside it
};

class Scan {
 public:
  bool run(const QByteArray& svg) {
    QXmlStreamReader xml(svg);
    parts_.push_back({});
    open_.push_back(0);
    while (!xml.atEnd()) {
      switch (xml.readNext()) {
        case QXmlStreamReader::DTD:
          if (!xml.entityDeclarations().isEmpty()) return false;
          break;
        case QXmlStreamReader::StartElement:
          if (!enter(xml)) return false;
          break;
        case QXmlStreamReader::EndElement:
          open_.pop_back();
          break;
        default:
          break;
      }
    }
    if (xml.hasError()) return false;
    std::vector<int> underWay;
    return cost(0, underWay) <= kMostElements;
  }

 private:
  bool enter(const QXmlStreamReader& xml) {
    if (static_cast<int>(open_.size()) > kDeepest || ++total_ > kMostElements) return false;
    const QXmlStreamAttributes attributes = xml.attributes();
    int part = open_.back();
    parts_[static_cast<std::size_t>(part)].elements++;
    if (const QString id = attributes.value(QStringLiteral("id")).toString(); !id.isEmpty()) {
      const int inner = static_cast<int>(parts_.size());
      parts_.push_back({});
      parts_[static_cast<std::size_t>(part)].children.push_back(inner);
      byId_.insert(id, inner);
      part = inner;
    }
    open_.push_back(part);
    for (const QXmlStreamAttribute& attribute : attributes) {
      if (attribute.name() != u"href") continue;
      const QString target = attribute.value().trimmed().toString();
      if (xml.name() == u"a") continue;  // a link draws nothing
      if (target.startsWith(u'#')) {
        if (xml.name() == u"use") parts_[static_cast<std::size_t>(part)].repeats.push_back(target.mid(1));
      } else if (!target.isEmpty()) {
        return false;  // a file, an address, or a picture inside the picture
      }
    }
    return true;
  }

  // The elements drawn for the part; above the limit for a part that contains itself.
  long long cost(int part, std::vector<int>& underWay) {
    if (const auto known = costs_.constFind(part); known != costs_.constEnd()) return *known;
    if (std::find(underWay.begin(), underWay.end(), part) != underWay.end()) return kMostElements + 1;
    if (underWay.size() > 4UL * kDeepest) return kMostElements + 1;
    underWay.push_back(part);
    const Part& here = parts_[static_cast<std::size_t>(part)];
    long long sum = here.elements;
    for (const int child : here.children) sum = std::min(sum + cost(child, underWay), kMostElements + 1);
    for (const QString& id : here.repeats) {
      if (const auto target = byId_.constFind(id); target != byId_.constEnd()) {
        sum = std::min(sum + cost(*target, underWay), kMostElements + 1);
      }
    }
    underWay.pop_back();
    costs_.insert(part, sum);
    return sum;
  }

  std::vector<Part> parts_;
  std::vector<int> open_;
  QHash<QString, int> byId_;
  QHash<int, long long> costs_;
  long long total_ = 0;
};

}  // namespace

bool isHarmlessDrawing(const QByteArray& svg) { return svg.size() <= kLargestDrawing && Scan().run(svg); }

}  // namespace halvorn
