#pragma once

#include "core/modTraducoes.h"
#include "platform/unit/PosLog.h"

// Why a log did not come or was not erased: the code of the event and the text behind it.
struct Motivo {
    int codigo;
    QStringView chave;
    QStringView omissao;

    QString texto(const QString &pormenor = {}) const {
        const QString base = modTraducoes::texto(QStringLiteral("PosLog"), chave.toString(), omissao.toString());
        return pormenor.isEmpty() ? base : QString(base + QStringLiteral(": ") + pormenor);
    }
};

namespace motivos {

constexpr Motivo endereco{PosLog::ligacao, u"Endereco", u"endereço inválido"};
constexpr Motivo nome{PosLog::ligacao, u"Nome", u"nome desconhecido na rede"};
constexpr Motivo recusada{PosLog::ligacao, u"Recusada", u"ligação recusada"};
constexpr Motivo rede{PosLog::ligacao, u"Rede", u"dispositivo inacessível"};
constexpr Motivo perdida{PosLog::ligacao, u"Perdida", u"a ligação perdeu-se antes do fim"};
constexpr Motivo silencio{PosLog::ligacao, u"Silencio", u"o dispositivo deixou de responder"};
constexpr Motivo demora{PosLog::ligacao, u"Demora", u"a transferência excedeu o tempo máximo"};
constexpr Motivo naoFala{PosLog::naoFala, u"NaoFala", u"o dispositivo não transfere o log por esta porta"};
constexpr Motivo dispositivo{PosLog::dispositivo, u"Dispositivo", u"o dispositivo respondeu"};
constexpr Motivo versao{PosLog::versao, u"Versao", u"versão do protocolo não suportada"};
constexpr Motivo estrutura{PosLog::transferencia, u"Estrutura", u"resposta fora do protocolo"};
constexpr Motivo contagem{PosLog::transferencia, u"Contagem", u"número de registos diferente do anunciado"};
constexpr Motivo soma{PosLog::transferencia, u"Soma", u"soma de controlo errada"};
constexpr Motivo longa{PosLog::transferencia, u"Longa", u"linha demasiado longa"};
constexpr Motivo espaco{PosLog::escrita, u"Espaco", u"o log não cabe na memória"};
constexpr Motivo apagamento{PosLog::apagamento, u"Apagamento", u"o dispositivo respondeu"};
constexpr Motivo ocupado{PosLog::apagamento, u"Ocupado", u"está em curso outra operação"};
constexpr Motivo ficheiroNaoApaga{PosLog::apagamento, u"Ficheiro", u"um ficheiro de log não é apagado"};
constexpr Motivo limpeza{PosLog::limpeza, u"Limpeza", u"o apagamento não foi confirmado"};
constexpr Motivo conversao{PosLog::conversao, u"Conversao", u"o log contém dados que não são texto"};
constexpr Motivo ficheiro{PosLog::transferencia, u"Abrir", u"não foi possível ler o ficheiro"};

} // namespace motivos
