#pragma once

#include <QDateTime>
#include <QString>

// When a mission begins and when its memory is full.
namespace prazos1921 {

constexpr int maiorAtraso = 59040; // minutes: 41 days
constexpr int amostras = 2048;

// Whole minutes from now to the start, seconds left out: none for a past start, 41 days at most.
int minutosAte(const QDateTime &agora, const QDateTime &inicio);

// The present moment and so many minutes.
QDateTime MinutosParaData(int minutos);

// 2048 intervals after the start, as a text; empty when the start is no date.
QString DataFimPrevista(const QString &inicio, const QString &intervalo);

} // namespace prazos1921
