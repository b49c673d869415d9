#pragma once

#include "platform/report/DataReport.h"

#include <memory>

// The designed reports by name; null for a name that is not in the table.
std::unique_ptr<DataReport> criarRelatorio(const QString &nome);
