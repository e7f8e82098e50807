#include "Platform/window/linux/Mnemonics.h"

#include <QSet>
#include <algorithm>

namespace halvorn {
namespace {

bool isTyped(QChar letter) {
  switch (letter.script()) {
    case QChar::Script_Latin:
    case QChar::Script_Cyrillic:
    case QChar::Script_Greek:
    case QChar::Script_Armenian:
    case QChar::Script_Georgian:
    case QChar::Script_Hebrew:
    case QChar::Script_Arabic:
      return letter.isLetter();
    default:
      return false;
  }
}

QChar freeLetterOf(const QString& title, const QSet<QChar>& taken) {
  const auto isFree = [&](qsizetype at) {
    return isTyped(title.at(at)) && !taken.contains(title.at(at).toCaseFolded());
  };
  for (const bool firstOnly : {true, false}) {
    for (qsizetype at = 0; at < title.size(); ++at) {
      const bool first = at == 0 || !title.at(at - 1).isLetter();
      if ((first || !firstOnly) && isFree(at)) return title.at(at);
    }
  }
  return {};
}

}  // namespace

std::vector<QChar> mnemonicsFor(const QStringList& titles) {
  QSet<QChar> taken;
  std::vector<QChar> letters;
  for (const QString& title : titles) {
    letters.push_back(freeLetterOf(title, taken));
    taken.insert(letters.back().toCaseFolded());
  }
  return letters;
}

}  // namespace halvorn
