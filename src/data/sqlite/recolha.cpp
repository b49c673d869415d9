#include "data/sqlite/recolha.h"

#include <QStringBuilder>

#include <sqlite3.h>
#include <sys/stat.h>

#include <algorithm>
#include <utility>

namespace {

// Cutting the log keeps writers away, so whoever is in the way is not waited for longer than a window may be.
constexpr int esperaMs = 20;
constexpr int loteGrande = 4;                            // times what is worth a turn
constexpr std::chrono::milliseconds entreTentativas(20); // while somebody waits

// A connection that has read nothing knows of no log: its checkpoint takes in nothing and calls that success.
bool lerAlgo(sqlite3 *bd) {
    return sqlite3_exec(bd, "SELECT 1 FROM sqlite_schema LIMIT 1", nullptr, nullptr, nullptr) == SQLITE_OK;
}

} // namespace

Recolha::Recolha(sqlite3 *bd, const QByteArray &caminho, std::function<bool()> noLugar, const Medidas &medidas)
    : m_caminho(caminho), m_noLugar(std::move(noLugar)), m_medidas(medidas),
      m_trabalho([this](const std::stop_token &parar) { correr(parar); }) {
    sqlite3_wal_hook(bd, &Recolha::aposConfirmar, this); // in place of the engine's, which does it within the commit
}

Recolha::~Recolha() {
    m_trabalho.request_stop();
    {
        const std::scoped_lock vez(m_mutex);
        if (m_bd)
            sqlite3_interrupt(m_bd);
    }
    m_trabalho.join();
    sqlite3_close(m_bd);
}

int Recolha::aposConfirmar(void *esta, sqlite3 *, const char *, int paginas) {
    auto *r = static_cast<Recolha *>(esta);
    const int novas = paginas < r->m_paginas ? paginas : paginas - r->m_paginas; // less: the log began anew
    r->m_paginas = paginas;
    if (paginas >= r->m_medidas.paginas) {
        const std::scoped_lock vez(r->m_mutex);
        r->m_pedida = true;
        if (novas >= loteGrande * r->m_medidas.paginas)
            r->m_atrasada = true;
        r->m_aviso.notify_one();
    }
    return SQLITE_OK;
}

qint64 Recolha::tamanhoDoDiario() const {
    struct stat st {};
    return ::stat(QByteArray(m_caminho + "-wal").constData(), &st) == 0 ? qint64(st.st_size) : 0;
}

void Recolha::correr(const std::stop_token &parar) {
    std::unique_lock vez(m_mutex);
    while (!parar.stop_requested()) {
        const auto pausa = m_atrasada ? std::min(entreTentativas, m_medidas.entreOlhares) : m_medidas.entreOlhares;
        m_aviso.wait_for(vez, parar, pausa, [this] { return m_pedida; });
        const bool pedida = std::exchange(m_pedida, false) || m_atrasada;
        vez.unlock();
        bool tudo = true;
        if (!parar.stop_requested() && (pedida || tamanhoDoDiario() > m_medidas.bytes) && m_noLugar())
            tudo = recolher(parar);
        vez.lock();
        if (tudo && !m_pedida)
            m_atrasada = false;
    }
}

// By its name the file may be another one already, beside which lies the log of the one that was opened: taking it in
// there would ruin it. Asked once more, therefore, when all files are open.
bool Recolha::ligar() {
    if (m_bd)
        return true;
    sqlite3 *bd = nullptr;
    int mudou = 0;
    if (sqlite3_open_v2(m_caminho.constData(), &bd, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr) !=
            SQLITE_OK ||
        !lerAlgo(bd) || sqlite3_file_control(bd, "main", SQLITE_FCNTL_HAS_MOVED, &mudou) != SQLITE_OK || mudou != 0 ||
        !m_noLugar()) {
        sqlite3_close(bd);
        return false;
    }
    sqlite3_busy_timeout(bd, esperaMs);
    const std::scoped_lock vez(m_mutex);
    m_bd = bd;
    return true;
}

bool Recolha::recolher(const std::stop_token &parar) {
    if (!ligar() || !lerAlgo(m_bd) || parar.stop_requested())
        return false;
    int noDiario = -1, recolhidas = -1;
    if (sqlite3_wal_checkpoint_v2(m_bd, nullptr, SQLITE_CHECKPOINT_PASSIVE, &noDiario, &recolhidas) != SQLITE_OK ||
        noDiario < 0 || recolhidas < noDiario || parar.stop_requested())
        return false;
    return tamanhoDoDiario() <= m_medidas.bytes ||
           sqlite3_wal_checkpoint_v2(m_bd, nullptr, SQLITE_CHECKPOINT_TRUNCATE, &noDiario, &recolhidas) == SQLITE_OK;
}
