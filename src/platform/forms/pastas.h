#pragma once

#include <QString>

// The folder picker. The chosen folder ends in a separator; empty when cancelled.
QString PedeCaminhoParaPasta();
