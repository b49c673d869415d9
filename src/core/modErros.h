#pragma once

#include <QString>

// The one road of failures: the ring Errors.ini and the error dialog.
namespace modErros {

constexpr int entradasDoAnel = 500;
enum TipoDeErro : qint16 { aviso = 1, erro = 2 };

void TratarErro(const QString &fonte, const QString &descricao, const QString &numero);
void GuardarErro(qint16 tipo, const QString &data, const QString &l1, const QString &l2, const QString &l3,
                 const QString &l4);
bool GravarRegistoErro(qint16 tipo, const QString &data, const QString &l1, const QString &l2, const QString &l3,
                       const QString &l4);

// Reports the exception being handled; an Interrompido is dropped. Only for use inside a catch block.
void tratarExcepcaoCorrente(const char *fonte);

} // namespace modErros
