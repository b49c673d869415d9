#pragma once

#include "data/celula.h"
#include "poseidon/regras2251.h"

#include <QHash>
#include <QList>

// Tells what a user wrote into a row's flag from what the system writes there itself: nothing, or the alarm wording
// that the row's value and limits give, in whatever language and with whatever separator it was written.
class NotasDoLog {
public:
    NotasDoLog();
    bool eNota(const Celula &flag, const Celula &valor, const Celula &limites);

private:
    const modTratamentoDados2251::Limites &lidos(const QByteArray &texto);

    QList<modTratamentoDados2251::Redaccao> m_redaccoes;
    QHash<QByteArray, modTratamentoDados2251::Limites> m_limites;
};

// A stored value as a number; NaN for anything else.
double numeroGuardado(const Celula &valor);
