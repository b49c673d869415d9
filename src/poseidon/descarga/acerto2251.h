#pragma once

#include "poseidon/descarga/clienteXml.h"
#include "poseidon/relogio2251.h"

#include <QObject>

class Consola;

// Sets a unit's clock through its console. The unit's log is erased first.
class Acerto2251 : public QObject {
    Q_OBJECT
public:
    struct Tempos {
        int depoisDeApagar = relogio2251::esperaDepoisDeApagarMs;
        int dialogo = relogio2251::tempoDoDialogoMs;
        int depoisDoAcerto = relogio2251::esperaDepoisDoAcertoMs;
    };
    using QObject::QObject;
    void definirTempos(const Tempos &tempos) { m_tempos = tempos; }

    // All of these wait with the event loop running; they throw Interrompido when this object was destroyed meanwhile.
    relogio2251::Resultado ActualizarDataHoraDoPoseidon(const QString &ip, const QString &porta);
    bool EnviarDataHora(const QString &ip, quint16 porta);
    bool LimparLog2251_DH(const QString &ip, qint32 porta);

private:
    Tempos m_tempos;
    ClienteXml m_xml;
};
