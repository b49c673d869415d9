#include "data/modCompactRepairDB.h"

#include "core/rotina.h"

void cCompactRepairDB::CompactAndRepairDB(const QString &caminho) {
    m_origem = caminho;
    m_destino = caminho + u".ylk";
}

namespace modCompactRepairDB {

void CompactarErepararBD(const QString &caminho) {
    Rotina("modCompactRepairDB.CompactarErepararBD", [&] { cCompactRepairDB().CompactAndRepairDB(caminho); });
}

} // namespace modCompactRepairDB
