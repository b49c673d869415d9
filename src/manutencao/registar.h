#pragma once

class RegistoForms;

// Password, configuration and maintenance of sensors.
void registarManutencao(RegistoForms &forms);
