#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

// Numbers and lists of a DS1921 as the forms show them.
namespace numeros1921 {

// A number as people type one: a minus sign, digits, at most one point or comma. Blanks around it count for nothing.
bool eNumerico(QStringView texto);

// The value with so many decimals and the local separator; a half goes away from zero.
QString formatar(double valor, int casas);
double arredondar(double valor, int casas);

// What a button of one type can be set to; values in descending order.
struct Gama {
    QStringView tipo;
    double limiteDe, limiteAte;
    double calibracao, passoCalibracao; // from +calibracao down to -calibracao
    int casasCalibracao;
};
const Gama &gamaDe(const QString &tipoRegistador);
QStringList limitesDe(const Gama &gama);
QStringList calibracoesDe(const Gama &gama);

// Is there no reading that lies between these two?
bool tudoEmAlarme(const Gama &gama, double minimo, double maximo);

constexpr double passoDosLimites = 0.5;
constexpr int casasDosLimites = 1;
constexpr int maiorIntervalo = 255; // minutes

} // namespace numeros1921
