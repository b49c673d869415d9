#pragma once

#include <QDateTime>
#include <QString>

#include <functional>

// The maker of the demonstration installation. The same request with the same end gives the same content.
namespace demonstracao {

struct Pedido {
    qint64 linhas = 0; // rows in all, about; 0: thirteen months of the main sensors, one month of the others
    quint64 semente = 1;
    QDateTime fim;                                  // of the history; invalid: now, rounded down to five minutes
    std::function<void(const QString &)> aoAvancar; // told what is being made
};

struct Resultado {
    qint64 linhas = 0;
    qint64 bytes = 0;
    double segundos = 0;
    qint64 fim = 0; // of the history, wall-clock seconds
};

// A whole database at a path where none is. It appears there only when it is complete.
Resultado fazerBase(const QString &caminho, const Pedido &pedido);

// Folder of the executable, of the settings (below it) and of the database. An existing database is replaced.
Resultado fazerInstalacao(const QString &pasta, const Pedido &pedido);

} // namespace demonstracao
