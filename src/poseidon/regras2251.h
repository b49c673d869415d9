#pragma once

#include "core/literais.h"

#include <QString>

// The rules by which the text of a log becomes what is stored. No state.
namespace modTratamentoDados2251 {

// A whole number of tenths with its point: "235" gives "23.5". An empty text gives "ND".
QString TratarValor(QStringView texto);

// State of a Spider input: 1 for "10", 0 for anything else.
int TratarValorRecebidoSpider(QStringView texto);

// A number as the format "##0.00" writes it, with the local separator: halves go away from zero, on the number's
// 15 significant digits.
QString FormatarDuasCasas(double numero);
double DuasCasas(double numero); // the number that this text reads as

// A number to the 15 significant digits that its text keeps.
double comoTexto(double numero);

struct MaxMin {
    QString limites = u"NA"_s; // for Observacoes: maximum, "XXX", minimum
    QString texto = u"NA"_s;   // for flag: the alarm wording, or empty
};
// Both "NA" when the sensor has no limits (both absent or zero), and when anything cannot be read.
MaxMin VerificarMaxMinParaBD(const QString &maximo, const QString &minimo, const QString &valor);

// What stands before the number in an alarm's wording.
struct Redaccao {
    QString maximo, minimo;
    bool operator==(const Redaccao &) const = default;
};
Redaccao redaccaoEm(const QString &lingua);

// The limits of one sensor, read once.
class Limites {
public:
    Limites() = default;
    Limites(const QString &maximo, const QString &minimo); // unreadable texts: no limits
    bool existem() const { return m_existem; }
    QString observacoes() const { return m_observacoes; } // "NA" without limits
    bool dentro(double valor) const;
    QString texto(double valor) const; // the alarm wording, empty when within; "NA" without limits
    QString texto(double valor, const Redaccao &redaccao) const;

private:
    bool m_existem = false;
    bool m_temMaximo = false;
    bool m_temMinimo = false;
    double m_maximo = 0;
    double m_minimo = 0;
    QString m_observacoes = u"NA"_s;
};

// The value on the scale of a Sens-UI input, formatted; "NONE" for any other type. A scale of 0 to 0 stands for the
// input's own range. An input range without width is a failure.
struct Gama {
    double maximo = 0;
    double minimo = 0;
};
QString TratarValorSensUI(double valor, const Gama &escala, const QString &tipo, const Gama &entrada);

} // namespace modTratamentoDados2251
