#include "poseidon/descarga/resumo2251.h"

#include "core/estado.h"
#include "core/literais.h"
#include "poseidon/mensagens2251.h"

using mensagens2251::Mensagem;
using modTratamentoDados2251::Balanco;

namespace {

constexpr Mensagem linhas{u"LinhasLidas", u"%1 linhas lidas, %2 não lidas"};
constexpr Mensagem guardadas{u"Guardadas", u"guardadas"};
constexpr Mensagem especies[] = {
    {u"NTemperaturas", u"%1 temperaturas"}, {u"NHumidades", u"%1 humidades"}, {u"NMedias", u"%1 médias"},
    {u"NEntradas", u"%1 entradas"},         {u"NSaidas", u"%1 saídas"},       {u"NSensUI", u"%1 Sens-UI"},
};
static_assert(std::size(especies) == modTratamentoDados2251::TotalDeEspecies);
constexpr Mensagem substituidas{u"NSubstituidas", u"%1 leituras substituídas"};
constexpr Mensagem notas{u"NNotas", u"%1 notas mantidas"};
constexpr Mensagem ficaram{u"NFicaram", u"%1 leituras anotadas ficaram sem leitura do log"};
constexpr Mensagem apagada{u"MemoriaApagada", u"apagamento de %1 registos confirmado, restam %2"};
constexpr Mensagem intacta{u"MemoriaIntacta", u"memória não apagada: restam %1 registos"};
constexpr Mensagem linha{u"LinhaComCausa", u"Linha %1: %2"};
constexpr Mensagem eMais{u"EMaisLinhas", u"e mais %1 linhas"};

QString numero(qint64 n) {
    return estado().ambiente.locale.toString(n);
}

} // namespace

namespace resumo2251 {

QStringList dizer(const Balanco &b) {
    QStringList frases{linhas.texto().arg(numero(b.lidas), numero(b.naoLidas))};
    QStringList porEspecie;
    for (size_t i = 0; i < b.guardadas.size(); ++i)
        if (b.guardadas[i] > 0)
            porEspecie += especies[i].texto().arg(numero(b.guardadas[i]));
    frases += guardadas.texto(porEspecie.isEmpty() ? numero(0) : porEspecie.join(u", "_s));
    QString trocas = substituidas.texto().arg(numero(b.substituidas)) + u", "_s + notas.texto().arg(numero(b.notas));
    if (b.ficaram > 0)
        trocas += u", "_s + ficaram.texto().arg(numero(b.ficaram));
    frases += trocas;
    return frases;
}

QStringList ilegiveis(const Balanco &b) {
    QStringList frases;
    for (const modTratamentoDados2251::Ilegivel &i : b.ilegiveis)
        frases += linha.texto().arg(numero(i.linha), i.causa);
    if (const qint64 mais = b.naoLidas - qint64(b.ilegiveis.size()); mais > 0)
        frases += eMais.texto().arg(numero(mais));
    return frases;
}

QString memoriaApagada(qint64 registos, qint64 restam) {
    return apagada.texto().arg(numero(registos), numero(restam));
}

QString memoriaIntacta(qint64 registos) {
    return intacta.texto().arg(numero(registos));
}

} // namespace resumo2251
