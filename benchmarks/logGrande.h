#pragma once

#include "core/datas.h"
#include "core/literais.h"
#include "data/criarBD.h"
#include "data/ligacao.h"
#include "poseidon/modTratamentoDados2251.h"

#include <stdexcept>

// The log of one unit with 8 channels, a line a minute, and the database that knows them.
namespace logGrande {

inline const QString unidade = u"127.0.0.2"_s;
constexpr int canais = 8; // 4 temperatures, 2 humidities, 2 Sens-UI
constexpr int leiturasPorMedia = 5;
constexpr qint64 primeira = 1'600'000'000;

inline const char *tipoDe(int canal) {
    return canal < 4 ? "P 1250C" : canal < 6 ? "P 1250%" : "P 1250A";
}
inline int decimosDe(qint64 linha, int canal) {
    return 50 + int((linha * 7 + canal * 31) % 180);
}

inline void prepararUnidade(const QString &caminho) {
    criarBD(caminho);
    Ligacao &bd = ligacaoPartilhada();
    bd.abrir(caminho);
    for (int c = 0; c < canais; ++c) {
        const QString id = u"002%1"_s.arg(c, 13, 10, QChar(u'0'));
        bd.executar(u"INSERT INTO Sensores (SensorID, ID, Tipo, Descricao, PoseidonIP, SensUIMax, SensUIMin) VALUES "
                    "(?,?,?,?,?,20,4)"_s,
                    {id, QString::number(c), QString::fromLatin1(tipoDe(c)), u"Frigorífico %1"_s.arg(c),
                     QString(u'2' + unidade)});
        bd.executar(u"INSERT INTO Calibracoes VALUES (?,30,5,60,10,'TMP','NA','NA','0.5')"_s, {id});
    }
    bd.executar(u"INSERT INTO SensUI_Escalas (EscalaID, NomeEscala, Maximo, Minimo) VALUES (1,'bar',100,0)"_s);
    bd.executar(u"INSERT INTO SensUI_Relacoes SELECT SensorID, 1 FROM Sensores WHERE Tipo = 'P 1250A'"_s);
}

// Values moved by <desvio> tenths.
inline QByteArray fazerLog(qint64 linhas, int desvio = 0) {
    QByteArray log;
    log.reserve(linhas * 90);
    for (qint64 n = 0; n < linhas; ++n) {
        log += datas::textoBD(double(primeira + n * 60)).replace(u' ', u';').toLatin1() + ";0;1;8";
        for (int c = 0; c < canais; ++c)
            log += ';' + QByteArray::number(c) + ';' + QByteArray::number(decimosDe(n, c) + desvio);
        log += '\n';
    }
    return log;
}

// Line by line, as it comes from the unit, and into the tables; what it replaces is kept beside `guarda`. `reunidas` is
// called between the two.
inline qint64 importar(const QByteArray &log, const QString &guarda, const std::function<void()> &passar,
                       const std::function<void(qint64)> &reunidas = {}) {
    TratamentoDados2251 t(passar);
    t.definirGuarda(guarda);
    qsizetype inicio = 0;
    for (qsizetype fim; (fim = log.indexOf('\n', inicio)) >= 0; inicio = fim + 1)
        t.TratarDadosRecebidos(unidade, QString::fromLatin1(log.constData() + inicio, fim - inicio), leiturasPorMedia,
                               inicio == 0);
    const qint64 linhas = t.linhasReunidas();
    if (reunidas)
        reunidas(linhas);
    if (!t.GuardarDados(unidade))
        throw std::runtime_error(t.motivo().toStdString());
    return linhas;
}

} // namespace logGrande
