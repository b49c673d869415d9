#pragma once

#include "poseidon/modTratamentoDados2251.h"
#include "tests/apoio/instalacao.h"

// A unit in the database, and logs of it.
namespace log2251 {

const QString unidade = u"127.0.0.2"_s;

// A database that does not wait for the disk.
struct BaseRapida : Instalacao {
    BaseRapida() { cnBD().executar(u"PRAGMA synchronous = OFF"_s); }
};

// "a|b" of every row; texts and numbers as they are stored, "~" for Null.
inline QStringList conteudo(const QString &consulta) {
    QStringList linhas;
    Recordset rs = cnBD().consultar(consulta);
    while (rs.avancar()) {
        QStringList celulas;
        for (int i = 0; i < rs.colunas(); ++i) {
            int tamanho = 0;
            const char *bytes = rs.utf8(i, tamanho);
            celulas += bytes ? QString::fromUtf8(bytes, tamanho) : u"~"_s;
        }
        linhas += celulas.join(u'|');
    }
    return linhas;
}

inline QStringList tabela(const QString &nome) {
    return conteudo(u"SELECT * FROM %1 ORDER BY %2"_s.arg(nome, dialecto::ordem));
}

struct Canal {
    QString sensorID, id;
    QString tipo = modTratamentoDados2251::tipoTemperatura.toString();
    QString calibracao = u"0"_s;
    QVariant maximo = u"NA"_s;
    QVariant minimo = u"NA"_s;
    QString modo = u"2"_s;
};

inline void canal(const Canal &c) {
    cnBD().executar(u"INSERT INTO Sensores (SensorID, ID, Tipo, Descricao, PoseidonIP, SensUIMax, SensUIMin) "
                    "VALUES (?,?,?,?,?,20,4)"_s,
                    {c.sensorID, c.id, c.tipo, QString(u"Sala "_s + c.id), QString(c.modo + unidade)});
    const QString sufixo = c.tipo.endsWith(u'%') ? u"Hum"_s : QString();
    cnBD().executar(u"INSERT INTO Calibracoes (SondaID, Maximo%1, Minimo%1, Calibracao) VALUES (?,?,?,?)"_s.arg(sufixo),
                    {c.sensorID, c.maximo, c.minimo, c.calibracao});
}

inline void escala(const QString &sensorID, double maximo, double minimo, const QString &nome = u"bar"_s) {
    cnBD().executar(u"INSERT INTO SensUI_Escalas (NomeEscala, Maximo, Minimo) VALUES (?,?,?)"_s,
                    {nome, maximo, minimo});
    cnBD().executar(u"INSERT INTO SensUI_Relacoes SELECT ?, MAX(EscalaID) FROM SensUI_Escalas"_s, {sensorID});
}

inline void spider(int inputID) {
    cnBD().executar(u"INSERT INTO PoseidonInputsSpider (PoseidonIP, InputID) VALUES (?,?)"_s, {unidade, inputID});
}

inline void receber(TratamentoDados2251 &t, const QStringList &linhas, int nMedia = 1) {
    bool primeira = true;
    for (const QString &linha : linhas) {
        t.TratarDadosRecebidos(unidade, linha, nMedia, primeira);
        primeira = false;
    }
}

inline bool descarregar(const QStringList &linhas, int nMedia = 1) {
    TratamentoDados2251 t;
    receber(t, linhas, nMedia);
    return t.GuardarDados(unidade);
}

// A line at minute <n> of a day.
inline QString linha(int n, const QString &pares, int tipo = 1, int contagem = 2) {
    return u"2011-03-01;%1:%2:00;x;%3;%4;%5"_s.arg(n / 60, 2, 10, QChar(u'0'))
        .arg(n % 60, 2, 10, QChar(u'0'))
        .arg(tipo)
        .arg(contagem)
        .arg(pares);
}

// One of everything, and a log that fills every table; <desvio> changes all its values.
inline void unidadeCompleta() {
    canal({u"S1"_s, u"101"_s, u"P 1250C"_s, u"0.5"_s, 30, 10});
    canal({u"S2"_s, u"102"_s, u"P 1250%"_s, u"0"_s, 60.5, u"NA"_s});
    canal({u"S3"_s, u"103"_s, u"P 1250A"_s, u"0"_s, 0, 0});
    escala(u"S3"_s, 100, 0);
    spider(201);
}

inline QStringList logCompleto(int minutos, int desvio) {
    QStringList log;
    for (int n = 0; n < minutos; ++n) {
        log += linha(n, u"101;%1;102;%2;103;%3;201;%4"_s.arg(200 + (n * 7 + desvio) % 150)
                            .arg(550 + (n + desvio) % 100)
                            .arg(40 + (n * 3 + desvio) % 160)
                            .arg((n + desvio) % 2 * 10));
        if (n % 5 == 0) {
            log += linha(n, u"1;%1;2;0;3;1"_s.arg((n + desvio) % 2), 3, 3);
            log += linha(n, u"151;%1;152;0"_s.arg((n + desvio) % 2), 4);
        }
    }
    return log;
}

const QStringList tabelasDoLog{u"Temperaturas"_s,   u"Humidade"_s,        u"Medias"_s,
                               u"REGISTO_Inputs"_s, u"REGISTO_Outputs"_s, u"SensUI_Leituras"_s};

inline QMap<QString, QStringList> tudo() {
    QMap<QString, QStringList> t;
    for (const QString &nome : tabelasDoLog)
        t[nome] = tabela(nome);
    return t;
}

} // namespace log2251
