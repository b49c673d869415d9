#pragma once

#include <QDateTime>
#include <QString>

// Wall-clock times. In the database: "YYYY-MM-DD HH:MM:SS". In memory: QDateTime carried as UTC, so that no time
// zone ever shifts them, or a double of whole seconds since 1970-01-01 00:00:00 of the same clock.
namespace datas {

// NaN when the text is no date. A date without a time means midnight; seconds may be missing, fractions of one are
// dropped.
double segundosDe(const char *texto, int tamanho);
double segundosDe(const QString &texto);
double segundosDe(const QDateTime &instante);
QDateTime instanteDe(double segundos);
QString textoBD(const QDateTime &instante);
QString textoBD(double segundos);

// Texts in the locale's form: short date with a four-digit year, time with seconds, "date time".
QString textoData(const QDate &data);
QString textoHora(const QTime &hora);
QString textoDataHora(const QDateTime &instante);
QDateTime lerDataHora(const QString &texto); // invalid when it is none
QString formatoData();
QString formatoHora();

} // namespace datas
