#pragma once

#include "data/motor.h"
#include "data/sqlite/lugarDoFicheiro.h"
#include "data/sqlite/recolha.h"

#include <SQLiteCpp/Database.h>

#include <optional>

// One file, written with a log beside it.
class MotorSQLite final : public Motor {
public:
    MotorSQLite(const QString &caminho, const Abertura &abertura);

    bool soLeitura() const override { return m_soLeitura; }
    qint64 versaoDoEsquema() override;
    void definirEspera(int ms) override;
    bool desactualizado() const override;
    std::unique_ptr<Instrucao> preparar(const QString &sql, Uso uso) override;
    void executarGuiao(const QString &sql) override;
    bool emTransaccao() const override;
    void iniciar() override;
    int confirmar() override;
    void anular() override;
    void adiantarConfirmacao() override;
    bool porRecolher() const override { return m_recolha && m_recolha->atrasada(); }
    [[noreturn]] void falhar(int codigo, const QString &contexto = {}) override;
    bool noLugar() const override { return m_lugar->mantem(); }
    void copiarPara(const QString &destino, const AoCopiar &acompanhar) override;

    qint64 alteradas() const; // rows, since the file was opened

private:
    struct Modo {
        std::string endereco;
        int modo;
        bool soLeitura, imutavel;
    };
    static Modo modoPara(const QString &caminho);
    MotorSQLite(const QString &caminho, const Modo &modo, const Abertura &abertura);
    int directo(const QByteArray &sql);
    QString examinar();

    SQLite::Database m_bd;
    bool m_soLeitura;
    bool m_imutavel; // read without locks, since no log can be made beside the file
    QString m_exame; // findings of the check, made once
    std::optional<LugarDoFicheiro> m_lugar;
    std::optional<Recolha> m_recolha; // only where this process may write; gone before the connection
};

// For data/motor.cpp.
extern const FabricaDeMotor fabricaSQLite;
