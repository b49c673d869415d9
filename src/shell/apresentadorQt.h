#pragma once

#include "core/ambiente.h"

#include <QPointer>

class frmErro;

// The error road's side of the windows.
class ApresentadorQt : public Apresentador {
public:
    bool FormEstaActivo(const QString &nome) override;
    void carregarErro(const QString &frase, const QString &mensagem) override;
    bool mostrarErro() override;
    void destacarErro(const QString &mensagem) override;
    void ampulheta(bool ligada) override;

private:
    QPointer<frmErro> m_erro;
};
