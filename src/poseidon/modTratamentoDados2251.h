#pragma once

#include "core/eventos.h"
#include "poseidon/regras2251.h"
#include "poseidon/tipos2251.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>
#include <QVarLengthArray>

#include <array>
#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace substituicao2251 {
struct Passo;
class Novas;
} // namespace substituicao2251
namespace substituidas2251 {
class Escritor;
}

namespace modTratamentoDados2251 {

// A line of a log of which something could not be read.
struct Ilegivel {
    qint64 linha = 0; // from 1
    QString causa;
};
constexpr size_t maximoDeIlegiveis = 5; // how many are told one by one

enum Especies { Temperaturas, Humidades, Medias, Entradas, Saidas, SensUI, TotalDeEspecies };

// What became of a log.
struct Balanco {
    qint64 lidas = 0, naoLidas = 0; // lines
    std::vector<Ilegivel> ilegiveis;
    std::array<qint64, TotalDeEspecies> guardadas{}; // rows, once their step is confirmed
    qint64 substituidas = 0;                         // stored readings that went without an equal one coming
    qint64 notas = 0;                                // that are on readings of the log
    qint64 ficaram = 0;                              // noted readings of a second that the log lacks
    QString ficheiro;                                // where the replaced readings are; empty: there are none
};

} // namespace modTratamentoDados2251

// Turns the lines of one downloaded log into rows. Everything is gathered in memory, 16 bytes a reading, until
// GuardarDados gives the rows their place in the tables, each kind in one transaction.
// While <passar> lets events run, the window that owns this may go; <passar> then throws Interrompido, and since this
// object went with it, no member is touched afterwards.
class TratamentoDados2251 {
public:
    explicit TratamentoDados2251(std::function<void()> passar = passarEventos);
    ~TratamentoDados2251();
    TratamentoDados2251(TratamentoDados2251 &&);
    TratamentoDados2251 &operator=(TratamentoDados2251 &&);

    // <primeira> opens a log: what the former one left is dropped, and the unit's sensors are read.
    void TratarDadosRecebidos(const QString &ip, const QString &linha, int nLeiturasMedia, bool primeira);
    bool GuardarDados(const QString &ip);
    // Why GuardarDados gave false, for who wants to know more than that.
    QString motivo() const { return m_motivo; }
    bool falhouFicheiro() const { return m_falhouFicheiro; } // that of the replaced readings
    // Where they are kept: beside the file of this name. Empty: nowhere.
    void definirGuarda(const QString &log) { m_nomeDaGuarda = log; }
    const modTratamentoDados2251::Balanco &balanco() const { return m_balanco; }
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
        int canal = 0;                        // the same, as the tables compare it
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
    using Campos = QVarLengthArray<QStringView, 64>;
    using Especies = modTratamentoDados2251::Especies;
    class NovasLeituras;
    class NovosRegistos;
    static constexpr qint16 estadoDesconhecido = 3;

    void CarregarVariaveis(const QString &ip);
    void CarregarSensoresDoPoseidon(const QString &ip);
    void CarregarEscalasSensUI();
    void CarregarInputsSpider(const QString &ip);
    void ligarSensores();

    void tratarLinha(const Campos &campos);
    void naoLida(const QString &causa);
    void TratarLinhaInputs(const Campos &campos, double data);
    void TratarLinhaOutputs(const Campos &campos, double data);
    void TratarLinha_SensoresESpider(const Campos &campos, double data);
    void tratarLeitura(const Sensor &sensor, quint32 indice, QStringView bruto, double data);
    void tratarSpider(QStringView identificador, QStringView bruto, double data);
    static double valorCalibrado(const Sensor &sensor, QStringView bruto);
    double CalibrarSensUI(const Sensor &sensor, double valor) const;
    void AdicionarValorParaMediaTemperatura(const Sensor &sensor, quint32 indice, double valor, double data);

    void darLugar(Especies especie, const substituicao2251::Passo &passo, substituicao2251::Novas &novas);
    void LimparDadosTemperaturas();
    void LimparDadosHumidade();
    void LimparDadosMedias();
    void LimparDadosSensUI();
    void LimparDadosInputs(const QString &ip);
    void LimparDadosSpider(const QString &ip);
    void LimparDadosOutputs(const QString &ip);

    std::function<void()> m_passar;
    QString m_motivo;
    bool m_falhouFicheiro = false;
    QString m_nomeDaGuarda;
    std::unique_ptr<substituidas2251::Escritor> m_guarda; // while rows are stored
    modTratamentoDados2251::Balanco m_balanco;
    QString m_parIlegivel;      // of the line: passed over, the pairs behind it count
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
};
