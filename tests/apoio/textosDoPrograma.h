#pragma once

#include "tests/apoio/textosDasFontes.h"

namespace textosDasFontes {

// Everything that the program asks for: what is seen while each form is opened, what its tables say, and what stands in
// the sources for rarer moments. Wants an application.
Textos textosDoPrograma(const QString &pastaDasFontes);

} // namespace textosDasFontes
