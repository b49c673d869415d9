#pragma once

#include <QByteArray>

#include <cstdio>
#include <cstdlib>
#include <utility>

#include <sqlite3.h>

// The engine's C interface for the bare loops that the program is compared with: every call here is one call of it, in
// line, and whatever fails ends the benchmark.
namespace nu {

inline void exigir(bool bem, sqlite3 *bd) {
    if (bem)
        return;
    std::fprintf(stderr, "%s\n", sqlite3_errmsg(bd));
    std::exit(1);
}

class Instrucao {
public:
    Instrucao(sqlite3 *bd, const char *sql) : m_bd(bd) {
        exigir(sqlite3_prepare_v2(bd, sql, -1, &m_instrucao, nullptr) == SQLITE_OK, bd);
    }
    ~Instrucao() { sqlite3_finalize(m_instrucao); }
    Instrucao(const Instrucao &) = delete;
    Instrucao &operator=(const Instrucao &) = delete;

    bool avancar() { return sqlite3_step(m_instrucao) == SQLITE_ROW; }
    const char *texto(int coluna) { return reinterpret_cast<const char *>(sqlite3_column_text(m_instrucao, coluna)); }
    int tamanho(int coluna) { return sqlite3_column_bytes(m_instrucao, coluna); }
    double real(int coluna) { return sqlite3_column_double(m_instrucao, coluna); }

    // From 1; texts have to stand until the row is stored.
    void ligar(int posicao, const char *texto, int tamanho = -1) {
        sqlite3_bind_text(m_instrucao, posicao, texto, tamanho, SQLITE_STATIC);
    }
    void copiar(int posicao, const QByteArray &texto) {
        sqlite3_bind_text(m_instrucao, posicao, texto.constData(), -1, SQLITE_TRANSIENT);
    }
    void ligar(int posicao, double valor) { sqlite3_bind_double(m_instrucao, posicao, valor); }
    void nulo(int posicao) { sqlite3_bind_null(m_instrucao, posicao); }
    void gravar() {
        exigir(sqlite3_step(m_instrucao) == SQLITE_DONE, m_bd);
        sqlite3_reset(m_instrucao);
    }

private:
    sqlite3 *m_bd;
    sqlite3_stmt *m_instrucao = nullptr;
};

class Base {
public:
    enum class Modo { Ler, Escrever }; // Escrever: made when missing
    explicit Base(const QByteArray &caminho, Modo modo = Modo::Ler) {
        const int modos = modo == Modo::Ler ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
        exigir(sqlite3_open_v2(caminho.constData(), &m_bd, modos, nullptr) == SQLITE_OK, m_bd);
    }
    ~Base() { sqlite3_close(m_bd); }
    Base(const Base &) = delete;
    Base &operator=(const Base &) = delete;

    void executar(const char *sql) { exigir(sqlite3_exec(m_bd, sql, nullptr, nullptr, nullptr) == SQLITE_OK, m_bd); }
    Instrucao preparar(const char *sql) { return {m_bd, sql}; }

private:
    sqlite3 *m_bd = nullptr;
};

} // namespace nu
