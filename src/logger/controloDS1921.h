#pragma once

#include "logger/memoriaDS1921.h"
#include "logger/missoes.h"
#include "logger/sequenciasAlarme.h"
#include "platform/onewire/DS1921.h"

#include <functional>
#include <memory>
#include <vector>

// What the state tab shows, under the names of its boxes and labels. The store reads it from here.
struct CaixasDS1921 {
    QString lblDescricaoRegistador, lblMissao, lblNumeroMissoes;
    bool numeroVisivel = false;
    QString txtEstadoMissao, txtIntervalo, txtCicloContinuoLigado, txtRollOverExecuted, txtInicioMissao;
    QString txtAtrasoMinutos, txtNleituras, txtAmostrasTotais, txtDataHoraTempoReal, txtDataPrevistaParaAcabar;
    QString txtLimiteMaximo, txtLimiteMinimo, txtAcertoTemp;
};

enum class EstadoMissao { SemRegistador, SemMissao, Atraso, Activa };

// All that is done with a button, without a window. Members that reach the bus let events run while they wait, and so
// may end by Interrompido after the window has gone: whoever calls one keeps a copy of the shared pointer meanwhile.
class ControloDS1921 {
public:
    static constexpr double CalibracaoNenhuma = -1000; // no logger has been read
    static constexpr qint16 FamiliaDS1921 = 0x21;

    ControloDS1921(); // the port is that of the settings

    // The user memory, in one try. Only what is Lida names a mission that anything may be stored under.
    enum class Memoria { SemSessao, SemRede, Nenhum, Perdida, Incompleta, Ilegivel, Lida };
    Memoria lerMemoria();
    const registoDS1921::Registo &registo() const { return m_registo; }

    // The state of the button whose memory was read; another one, or none, and nothing is known any more.
    EstadoMissao BuscarDadosPeloObjecto();
    EstadoMissao estadoDaMissao() const { return m_estado; }
    QString titulo() const;
    bool lido() const { return m_lido; } // memory and state of one button
    void esquecer();

    // Is what was read still what lies on the reader? Whatever destroys asks this first, and refuses otherwise.
    enum class Presenca { Nenhum, Mesmo, Outro, Mudou };
    Presenca conferir();
    bool VerificarROMID() { return conferir() == Presenca::Mesmo; }
    QString causa() const; // why it was refused last; empty when it was not

    // Samples that only the button has.
    int porGuardar() const;
    // Logger, mission and samples, a line each, for the question whether to destroy them.
    QString oQueSePerde() const;

    struct Programa {
        QString descricaoRegistador, descricaoMissao, calibracao;
        int intervalo = 1;
        bool cicloContinuo = false;
        QDateTime inicio;
        QString limiteMinimo, limiteMaximo;
    };
    // Writes record and mission; <passar> runs while another program holds the adapter. False: nothing was started.
    bool ActualizarIbutton(const Programa &programa, const std::function<void()> &passar);

    // Ends the mission on the button and clears its memory, unless it has more samples that are not stored than the
    // user was told. <aoTerminar> runs as soon as the mission has ended.
    enum class Fim { Nenhum, Terminada, Limpa };
    Fim terminarNoRegistador(int aceites, const std::function<void()> &aoTerminar);
    bool FormatarDS1921(int aceites, const std::function<void()> &passar);

    struct Linha {
        QDateTime data;
        double bruta = 0;       // as the button measured
        double temperatura = 0; // with calibration, three decimals
    };
    // All samples of the button; what is new of them is stored first, when reads are stored. A mission that was stopped
    // elsewhere gets its header here, from the start that the button still tells.
    std::vector<Linha> DownloadLog(const QString &calibracoes);

    // Every field that a header needs is filled.
    bool cabecaCompleta() const;
    void GuardarHeadersParaConsulta(const QString &calibracoes);
    ChaveMissao chave() const;

    void LimparTexts();
    void esvaziar();             // texts, and the labels of logger and mission
    bool missaoTerminou() const; // the logger's clock is past the planned end

    DS1921 controlo;
    CaixasDS1921 caixas;
    QString romidLido; // of the last read
    double Calibracao = CalibracaoNenhuma;
    int amostrasGuardadas = 0; // by the last download
    double LimiteMaxGlobal = 0;
    double LimiteMinGlobal = 0;

private:
    bool mesmoBotao();
    void guardarAmostras(const std::vector<missoes::Amostra> &amostras, const QString &calibracoes);
    QStringList linhasDoPrograma(const Programa &programa, const QString &ROMID) const;
    void mostrarRegisto(const MemoriaDS1921::Leitura &leitura);
    void mostrarLimites();

    SessaoTMEX::Porto m_porto;
    MemoriaDS1921 m_memoria;
    registoDS1921::Registo m_registo;
    EstadoMissao m_estado = EstadoMissao::SemRegistador;
    QString m_romDaMemoria; // whose record was read
    bool m_lido = false;
    Presenca m_presenca = Presenca::Mesmo;
    QDateTime m_inicioLido;
    int m_amostrasLidas = 0;
};
