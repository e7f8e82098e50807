#include "Platform/window/linux/QtLocalizedSizes.h"

#include <QLocale>
#include <QString>
#include <algorithm>
#include <cstdint>
#include <limits>

#include "Platform/window/linux/QtText.h"

namespace halvorn {

// The tables of the toolkit have the units of every language; those of the package's ICU have not, for their size.
LocalizedSizes::Part QtLocalizedSizes::partOf(std::uint64_t bytes, std::uint64_t whole) const {
  constexpr double kWithoutFraction = 100.0;
  constexpr double kThousand = 1000.0;  // as files are counted on the desktop
  constexpr std::uint64_t kLargest = std::numeric_limits<qint64>::max();
  const QLocale locale(toQString(language_));
  double all = static_cast<double>(whole);
  double some = static_cast<double>(bytes);
  const bool isInBytes = all < kThousand;
  while (all >= kThousand) {
    all /= kThousand;
    some /= kThousand;
  }
  const int digits = isInBytes || all >= kWithoutFraction ? 0 : 1;
  QString named = locale.formattedDataSize(static_cast<qint64>(std::min(whole, kLargest)), digits,
                                           QLocale::DataSizeSIFormat);
  // A number and its unit stay on one line.
  named.replace(QLatin1Char(' '), QChar(QChar::Nbsp));
  return {toText(locale.toString(some, 'f', digits)), toText(named)};
}

Text QtLocalizedSizes::number(std::uint64_t number) const {
  return toText(QLocale(toQString(language_)).toString(static_cast<qulonglong>(number)));
}

}  // namespace halvorn
