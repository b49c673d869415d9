#pragma once

#include "core/eventos.h"
#include "poseidon/regras2251.h"
#include "poseidon/tipos2251.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>
#include <QVarLengthArray>

#include <deque>
#include <functional>
#include <limits>
#include <vector>

// Turns the lines of one downloaded log into rows. Everything is gathered in memory, 16 bytes a reading, until
// GuardarDados clears what the same period already holds and writes the rows, each kind in one transaction.
// Whoever passes events may find the owner gone and throw Interrompido: nothing here is touched on its way out.
class TratamentoDados2251 {
public:
    explicit TratamentoDados2251(std::function<void()> passar = passarEventos) : m_passar(std::move(passar)) {}

    // <primeira> opens a log: what the former one left is dropped, and the unit's sensors are read.
    void TratarDadosRecebidos(const QString &ip, const QString &linha, int nLeiturasMedia, bool primeira);
    bool GuardarDados(const QString &ip);
    // Why GuardarDados gave false, for who wants to know more than that.
    QString motivo() const { return m_motivo; }
    qint64 linhasReunidas() const;

private:
    using Limites = modTratamentoDados2251::Limites;
    using Especie = modTratamentoDados2251::Especie;
    static constexpr double semData = std::numeric_limits<double>::quiet_NaN();

    struct Sensor {
        QString SensorID, ID, Tipo, Descricao;
        double Calibracao = 0; // NaN: unreadable
        Limites limites;
        Especie especie = Especie::Nenhuma;
        modTratamentoDados2251::Gama entrada; // SensUIMax, SensUIMin
        int escala = -1;                      // of vEscalas
        int acumulador = 0;                   // shared by rows of the same SensorID
        // As they are stored, in UTF-8.
        QByteArray utf8ID, utf8Descricao, utf8Observacoes, utf8Escala;
    };
    struct Escala {
        QString SensorID, NomeEscala;
        modTratamentoDados2251::Gama gama;
    };
    struct InputSpider {
        int InputID = 0;
        QString texto;
        qint16 estado = estadoDesconhecido;
    };
    struct Acumulador {
        bool existe = false;
        int resta = 0;
        double soma = 0;
    };
    // What a reading stores follows from its value and its sensor, so no text is kept.
    struct Leitura {
        double valor; // NaN: "ND"
        qint64 data : 40;
        quint64 sensor : 24;
    };
    struct Registo {
        qint64 data : 40;
        qint64 numero : 16;
        qint64 ligado : 2;
    };
    struct Periodo {
        double primeira = semData;
        double ultima = semData;
        void juntar(double data);
    };
    using Campos = QVarLengthArray<QStringView, 64>;
    // A table of readings: which rows it takes and how they are written.
    struct PassoLeituras {
        QStringView tabela;
        std::deque<Leitura> TratamentoDados2251::*linhas;
        void (TratamentoDados2251::*limpar)(const QString &ip, double primeira, double segunda);
        Periodo TratamentoDados2251::*periodo;
        bool ultimaPrimeiro; // the order in which the bounds are given to limpar
        QStringView insercao;
        bool textosSempre; // Observacoes and flag are never Null
    };
    static constexpr qint16 estadoDesconhecido = 3;

    void CarregarVariaveis(const QString &ip);
    void CarregarSensoresDoPoseidon(const QString &ip);
    void CarregarEscalasSensUI();
    void CarregarInputsSpider(const QString &ip);
    void ligarSensores();

    void tratarLinha(const Campos &campos);
    void TratarLinhaInputs(const Campos &campos, double data);
    void TratarLinhaOutputs(const Campos &campos, double data);
    void TratarLinha_SensoresESpider(const Campos &campos, double data);
    void tratarLeitura(const Sensor &sensor, quint32 indice, QStringView bruto, double data);
    void tratarSpider(QStringView identificador, QStringView bruto, double data);
    static double valorCalibrado(const Sensor &sensor, QStringView bruto);
    double CalibrarSensUI(const Sensor &sensor, double valor) const;
    void AdicionarValorParaMediaTemperatura(const Sensor &sensor, quint32 indice, double valor, double data);

    void guardarLeituras(const QString &ip, const PassoLeituras &passo);
    void guardarRegistos(const QString &ip, const std::deque<Registo> &linhas, QStringView insercao, int desconto,
                         const std::function<void()> &limpar);
    void limparLeituras(QStringView tabela, const QString &ip, double primeira, double segunda,
                        const std::deque<Leitura> &linhas);
    void apagarAosPoucos(QStringView tabela, const QString &onde, const QList<QByteArray> &textos, qint64 numero,
                         double primeira, double segunda);
    void LimparDadosTemperaturas(const QString &ip, double primeira, double segunda);
    void LimparDadosHumidade(const QString &ip, double primeira, double segunda);
    void LimparDadosMedias(const QString &ip, double primeira, double segunda);
    void LimparDadosSensUI(const QString &ip, double primeira, double segunda);
    void LimparDadosInputs(const QString &ip, int numero, double primeira, double segunda);
    void LimparDadosOutputs(const QString &ip, double primeira, double segunda);

    std::function<void()> m_passar;
    QString m_motivo;
    bool m_semSensores = false; // they could not be read: nothing was gathered, and nothing counts as written
    int NLeiturasMedia = 1;
    std::vector<Sensor> vSensores;
    QHash<QStringView, QVarLengthArray<quint32, 2>> m_porID; // keys are views of vSensores
    std::vector<Escala> vEscalas;
    std::vector<qint16> vInputs; // last states, from number 1
    std::vector<qint16> vOutputs;
    std::vector<InputSpider> vInputsSpider;
    std::vector<Acumulador> vAcumuladores;
    std::deque<Leitura> vTemperaturas, vHumidades, vMedias, vSensUI;
    std::deque<Registo> vRegInputs, vRegSpider, vRegOutputs;
    Periodo m_periodoTemperaturas, m_periodoHumidade, m_periodoSensUI;
    Periodo m_periodoInputs, m_periodoSpider, m_periodoOutputs;
};
