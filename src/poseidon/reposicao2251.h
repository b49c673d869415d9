#pragma once

#include <QString>

#include <functional>

// Puts back what a log took out of the tables, from the file that was kept of it.
//
// Afterwards each of those rows is again what it was, in its old place where that is still free; a reading that came
// beside them with the log goes. Other rows, also those that the log brought for other seconds, are left alone. Only a
// note that somebody wrote since, on what had replaced them, is not undone: it stays on the reading of its second.
// Doing it twice changes nothing more.
namespace reposicao2251 {

struct Conteudo {
    QString unidade; // its address
    QString momento; // when the rows were taken out
    qint64 leituras = 0;
};
// Reads and proves the whole file; throws Falha when it is none, or damaged.
Conteudo examinar(const QString &caminho, const std::function<void()> &passar);

struct Resultado {
    qint64 repostas = 0;
    qint64 jaEstavam = 0;
    qint64 retiradas = 0; // came with the log, for the same channel and second
    qint64 notas = 0;     // written since, and kept
};
// In one transaction. <passar> lets events run and may throw.
Resultado repor(const QString &caminho, const std::function<void()> &passar);

} // namespace reposicao2251
