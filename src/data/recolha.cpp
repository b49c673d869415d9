#include "data/recolha.h"

#include <sqlite3.h>

namespace {

constexpr int paginasParaRecolher = 1000; // the engine's own measure

// Passive: waits for nobody and takes what no reader still needs in the log. What is left comes next time.
void recolher(const QByteArray &caminho) {
    sqlite3 *bd = nullptr;
    if (sqlite3_open_v2(caminho.constData(), &bd, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr) == SQLITE_OK)
        sqlite3_wal_checkpoint_v2(bd, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
    sqlite3_close(bd);
}

} // namespace

Recolha::Recolha(sqlite3 *bd, const QByteArray &caminho) : m_caminho(caminho) {
    sqlite3_wal_hook(bd, &Recolha::aposConfirmar, this); // in place of the engine's, which does it within the commit
}

Recolha::~Recolha() = default;

int Recolha::aposConfirmar(void *esta, sqlite3 *, const char *, int paginas) {
    auto *r = static_cast<Recolha *>(esta);
    if (paginas < paginasParaRecolher || r->m_activa.exchange(true))
        return SQLITE_OK;
    r->m_trabalho = std::jthread([r] {
        recolher(r->m_caminho);
        r->m_activa = false;
    });
    return SQLITE_OK;
}
