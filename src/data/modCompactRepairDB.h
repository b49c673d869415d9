#pragma once

#include <QString>

// The start-up's place for a compaction. It composes what one would need and leaves the database unchanged:
// the engine reclaims space by itself, and the file may be in use by the capture service.
class cCompactRepairDB {
public:
    void CompactAndRepairDB(const QString &caminho);
    QString origem() const { return m_origem; }
    QString destino() const { return m_destino; }

private:
    QString m_origem;
    QString m_destino; // reserved name, never written
};

namespace modCompactRepairDB {
void CompactarErepararBD(const QString &caminho);
}
