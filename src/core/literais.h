#pragma once

#include <QString>

// u"text"_s everywhere.
using namespace Qt::StringLiterals;
