#pragma once

#include "core/estado.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <memory>

class Recordset;

using Parametros = QVariantList;

// The one connection to the shared file. It is created once and opened and closed as the settings say; a missing
// file is never created. All failures are Falha, with the engine's text and what is known about the file.
class Ligacao : public Servico {
public:
    Ligacao();
    ~Ligacao() override;

    void abrir(const QString &caminho); // Falha objectoAberto when open, falhaGeralBD when the file is missing
    void fechar();
    bool aberta() const;
    bool soLeitura() const;
    QString caminho() const;

    Recordset consultar(const QString &sql, const Parametros &valores = {});
    qint64 executar(const QString &sql, const Parametros &valores = {}); // rows changed
    void executarGuiao(const QString &sql);                              // several statements, no values

    struct Interno;
    Interno &interno() const { return *m; }

private:
    std::unique_ptr<Interno> m;
};

// A batch that clears and rewrites: undone as a whole unless confirmar() is reached. May be nested.
class Transaccao {
public:
    explicit Transaccao(Ligacao &ligacao);
    ~Transaccao();
    Transaccao(const Transaccao &) = delete;
    Transaccao &operator=(const Transaccao &) = delete;
    void confirmar();

private:
    Ligacao &m_ligacao;
    bool m_pendente = true;
};

// The open shared connection; Falha objectoFechado when there is none.
Ligacao &cnBD();
// The connection object itself, open or not; made on first use.
Ligacao &ligacaoPartilhada();
