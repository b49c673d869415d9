#pragma once

#include "poseidon/descarga/clienteXml.h"
#include "poseidon/listaPoseidons.h"
#include "poseidon/mensagens2251.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

class PosLog;
class Vigia;

// How the download of one row stands.
struct DescargaLog {
    int Linha = 0;
    QString IP;
    qint32 Porta = 80;
    qint32 PortaTelnet = 80;
    int NLeituras = 1;
    bool ApagarLog = false;
    int Estado = 0; // 0 not finished, 1 success, -1 failure
    QString Mensagem;
    QStringList Resumo;   // what became of the log, for the row
    QString Pormenor;     // what else is worth knowing of it
    QStringList Reservas; // why a log that was stored is no success, and the unit's memory is not erased
    QString info() const; // all of it, in lines
};

// Where a log object is told of its unit; its options stay as they are.
void prepararPosLog(PosLog &log, const QString &endereco, qint32 porta);

// Serves the ticked rows of the list, one after the other: configuration, clock, log, tables, erasure. A row that
// fails never stops those behind it.
class Descarga2251 : public QObject {
    Q_OBJECT
public:
    explicit Descarga2251(listaPoseidons::Lista &lista, QObject *pai = nullptr);
    ~Descarga2251() override;

    void descarregar();
    // The same road for one row, with the lines of a file: the unit is not asked for its log, nor for its clock.
    void importarFicheiro(int linha, const QString &caminho);
    bool activa() const { return m_activa; }
    const DescargaLog *resultado(int linha) const; // null: the row was in no download

Q_SIGNALS:
    void comecou();
    void linhaMudou(int linha);
    void terminou();

private:
    void CarregariDescargasLog2251();
    void DescarregarProximoLog();
    int proximaLinha();
    void servir(const Vigia &vigia);
    void DescarregarLog2251(const QString &ip, qint32 porta, const Vigia &vigia);
    void receber(bool ok, int nLeituras, const QString &erro, const mensagens2251::Mensagem &seFalhar);
    void SaveDataToDatabase(bool ok, int nLeituras, const QString &erro, const Vigia &vigia);
    void guardarLinhas(int nLeituras, const Vigia &vigia);
    QString guardarBruto(const PosLog &log, const std::function<void()> &passar) const;
    void concluir(qint64 naoLidas, bool deuLeituras, const Vigia &vigia);
    void ApagarLog(const Vigia &vigia);
    void AlterarEstadoDescargaLOG(int linha, int estado);
    void falhar(const QString &mensagem, const QString &pormenor = {}, int estado = mensagens2251::comFalha);
    void seguir();
    void TerminarLeiturasLog2251();
    DescargaLog &actual() { return DescargasLog[size_t(LinhaActual) - 1]; }

    listaPoseidons::Lista &m_lista;
    ClienteXml m_xml;
    std::vector<DescargaLog> DescargasLog;
    int LinhaActual = 0;
    bool m_activa = false;
    QString m_ficheiro; // empty: the logs come from the units
    std::shared_ptr<PosLog> m_PosLog;
    QTimer m_TimerDNextLog;
};
