#pragma once

class RegistoForms;

// Makes the views known by their names.
void registarVistas(RegistoForms &forms);
