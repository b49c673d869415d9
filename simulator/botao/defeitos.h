#pragma once

#include <QString>

#include <array>
#include <optional>

namespace simulador {

// What a virtual reader can be made to do wrong. Numbers count down; 0 is off.
struct DefeitosBotao {
    int semPresenca = 0;   // resets that nobody answers
    int crcErrado = 0;     // answers with a CRC that does not fit
    int esErrado = 0;      // scratchpads read back with another ending offset
    int copiaRecusada = 0; // copies answered with FF
    int ruido = 0;         // bytes on the line with one wrong bit each
    int retirar = 0;       // bytes after which the button is taken off the reader
    int sip = 0;           // status reads that show a sample in progress
    int saltoNoLog = 0;    // reads of the log during which one more sample is taken
    int contacto = 0;      // pages after which one page cannot be read, however often it is tried
    int adaptadorFora = 0; // operations after which the adapter itself is gone
};

struct InfoDefeitoBotao {
    QStringView nome;
    int DefeitosBotao::*campo;
    QStringView descricao;
};
inline constexpr std::array tabelaDeDefeitosBotao = {
    InfoDefeitoBotao{u"sem-presenca", &DefeitosBotao::semPresenca, u"N impulsos de reset sem resposta"},
    InfoDefeitoBotao{u"crc", &DefeitosBotao::crcErrado, u"N respostas com o CRC errado"},
    InfoDefeitoBotao{u"es", &DefeitosBotao::esErrado, u"N leituras do rascunho com outro fim"},
    InfoDefeitoBotao{u"copia", &DefeitosBotao::copiaRecusada, u"N cópias recusadas"},
    InfoDefeitoBotao{u"ruido", &DefeitosBotao::ruido, u"N bytes na linha com um bit trocado"},
    InfoDefeitoBotao{u"retirar", &DefeitosBotao::retirar, u"o botão sai do leitor ao fim de N bytes"},
    InfoDefeitoBotao{u"sip", &DefeitosBotao::sip, u"N leituras do estado com uma amostra em curso"},
    InfoDefeitoBotao{u"salto", &DefeitosBotao::saltoNoLog, u"N leituras do log com uma amostra pelo meio"},
    InfoDefeitoBotao{u"contacto", &DefeitosBotao::contacto,
                     u"ao fim de N páginas lidas o contacto perde-se durante uma"},
    InfoDefeitoBotao{u"adaptador", &DefeitosBotao::adaptadorFora,
                     u"o adaptador deixa de responder ao fim de N operações"},
};

} // namespace simulador
