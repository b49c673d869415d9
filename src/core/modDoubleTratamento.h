#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// Numbers kept as text, whatever locale wrote them.
namespace modDoubleTratamento {

QString SeparadorDecimal();

// The value of a text whose one separator is anything but a digit or "-". Throws Falha (type mismatch) when the
// text is no number; a text with two different separators is not repaired.
double TextoParaDouble(const QString &texto);
std::optional<double> LerDouble(const QString &texto); // the same without the failure
QString TextoComPonto(const QString &texto);

// True for the sentinel of a reading that could not be taken.
bool eND(const QString &texto);

// A number as text: 15 significant digits, no exponent, "0" for minus zero; the local separator, or a point.
QString NumeroParaTexto(double numero);
// With so many decimals, rounded or filled up with zeros; negative: as many as there are.
QString NumeroParaTexto(double numero, int casas);
QByteArray NumeroComPonto(double numero);

// Round(x, places) on that decimal text: halves go to the even digit.
double Arredondar(double numero, int casas);

} // namespace modDoubleTratamento
