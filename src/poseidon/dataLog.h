#pragma once

#include <QStringView>

// The date and the time of a log line, as datas::segundosDe; NaN when they are none. The date is year month day or day
// month year, parted by "-", "/" or "."; seconds may be missing, no time at all means midnight.
namespace dataLog {

double segundosDe(QStringView data, QStringView hora);

} // namespace dataLog
