#include "poseidon/descarga/acerto2251.h"

#include "core/espera.h"
#include "core/estado.h"
#include "core/falha.h"
#include "platform/unit/Consola.h"
#include "platform/unit/PosLog.h"
#include "platform/unit/rede.h"
#include "poseidon/descarga/descarga2251.h"
#include "poseidon/modPoseidons.h"

#include <QPointer>

relogio2251::Resultado Acerto2251::ActualizarDataHoraDoPoseidon(const QString &ip, const QString &porta) {
    const QPointer<Acerto2251> vivo(this);
    bool numero = false;
    const int lida = porta.toInt(&numero);
    const qint32 portaHTTP = numero ? lida : modPoseidons::portaPorOmissao;
    estado().PortaTerminal = QString::number(rede::portaDaConsola());
    LimparLog2251_DH(ip, portaHTTP);
    if (!vivo)
        throw Interrompido();
    espera::pausar(this, m_tempos.depoisDeApagar);
    if (!EnviarDataHora(ip, estado().PortaTerminal.toUShort()))
        return relogio2251::resultadoDoAcerto(false, {});
    espera::pausar(this, m_tempos.depoisDoAcerto);
    const QString xml = m_xml.ocupado() ? QString() : m_xml.DescarregarXML(ip, QString::number(portaHTTP));
    return relogio2251::resultadoDoAcerto(true, xml);
}

bool Acerto2251::EnviarDataHora(const QString &ip, quint16 porta) {
    const std::unique_ptr<Consola> wskTimeUpdate = novaConsola();
    relogio2251::Dialogo dialogo;
    Consola *consola = wskTimeUpdate.get();
    connect(consola, &Consola::DataArrival, consola, [consola, &dialogo] {
        const relogio2251::Dialogo::Resposta resposta = dialogo.receber(consola->GetData());
        if (consola->State() > 0 && !resposta.enviar.isEmpty())
            consola->SendData(resposta.enviar);
        if (resposta.fechar)
            consola->Close();
    });
    connect(consola, &Consola::Error, consola, &Consola::Close);
    consola->Connect(modPoseidons::TratarIP(ip), porta);
    const bool acabou = espera::ate(this, m_tempos.dialogo, [consola] { return consola->State() <= 0; });
    return acabou && dialogo.confirmado();
}

bool Acerto2251::LimparLog2251_DH(const QString &ip, qint32 porta) {
    const std::unique_ptr<PosLog> PosLogDH = novoPosLog();
    const QPointer<Acerto2251> vivo(this);
    prepararPosLog(*PosLogDH, rede::resolver(modPoseidons::TratarIP(ip), this), porta);
    const bool apagado = PosLogDH->apagar();
    if (!vivo)
        throw Interrompido();
    return apagado;
}
