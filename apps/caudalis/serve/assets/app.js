// The design office's app: a machine editor with its live result, the field-test page and the
// catalogue page. Every text from the server goes into the page as text (never as markup).
"use strict";

const state = { token: "", result: null, plots: {}, timer: 0, brands: [], models: [], openedDesign: null };

const $ = (id) => document.getElementById(id);

function say(message) {
  $("status").textContent = message;
}

async function api(method, address, body) {
  const options = { method, headers: {} };
  if (method !== "GET") {
    options.headers["X-Caudalis-Token"] = state.token;
  }
  if (body !== undefined) {
    options.headers["Content-Type"] = "application/json";
    options.body = JSON.stringify(body);
  }
  const response = await fetch(address, options);
  const type = response.headers.get("Content-Type") || "";
  const answer = type.startsWith("application/json") ? await response.json() : await response.text();
  if (!response.ok) {
    throw new Error(answer && answer.error ? answer.error : "the server answered " + response.status);
  }
  return answer;
}

function cell(row, text, header) {
  const element = document.createElement(header ? "th" : "td");
  if (header) {
    element.scope = "row";
  }
  element.textContent = text === null || text === undefined ? "" : String(text);
  row.appendChild(element);
  return element;
}

function button(label, action, accessibleName) {
  const element = document.createElement("button");
  element.type = "button";
  element.textContent = label;
  if (accessibleName) {
    element.setAttribute("aria-label", accessibleName);
  }
  element.addEventListener("click", action);
  return element;
}

function number(value, digits) {
  return typeof value === "number" ? value.toFixed(digits) : value;
}

function option(select, value, label) {
  const element = document.createElement("option");
  element.value = value;
  element.textContent = label;
  select.appendChild(element);
}

// ---- pages -------------------------------------------------------------------------------

function showPage(name) {
  for (const page of document.querySelectorAll(".page")) {
    page.hidden = page.id !== "page-" + name;
  }
  for (const link of document.querySelectorAll(".page-link")) {
    link.setAttribute("aria-current", link.dataset.page === name ? "page" : "false");
  }
}

// ---- the machine editor ------------------------------------------------------------------

function numberInput(value, label) {
  const input = document.createElement("input");
  input.type = "number";
  input.step = "any";
  input.value = value;
  input.setAttribute("aria-label", label);
  input.addEventListener("input", designSoon);
  return input;
}

function addSpan(span) {
  const body = $("spans").tBodies[0];
  const row = body.insertRow();
  const position = body.rows.length;
  cell(row, position, true);
  const fields = [
    ["length_m", "Length, m"], ["diameter_mm", "Pipe inside diameter, mm"],
    ["outlet_spacing_cm", "Outlet spacing, cm"], ["end_elevation_m", "End elevation, m"],
    ["regulator_kpa", "Regulator, kPa"]];
  for (const [key, label] of fields) {
    const value = span[key] === undefined ? "" : span[key];
    row.insertCell().appendChild(numberInput(value, label + " of span " + position));
  }
  row.insertCell().appendChild(button("Remove", () => { row.remove(); renumberSpans(); designSoon(); }, "Remove span " + position));
}

function renumberSpans() {
  Array.from($("spans").tBodies[0].rows).forEach((row, i) => {
    row.cells[0].textContent = String(i + 1);
    for (const input of row.querySelectorAll("input")) {
      input.setAttribute("aria-label", input.getAttribute("aria-label").replace(/span \d+$/, "span " + (i + 1)));
    }
    row.querySelector("button").setAttribute("aria-label", "Remove span " + (i + 1));
  });
}

function spanRows() {
  return Array.from($("spans").tBodies[0].rows).map((row) =>
    Array.from(row.querySelectorAll("input")).map((input) => input.value));
}

function value(id) {
  return Number($(id).value);
}

/// The design file the editor describes (SI).
function designFile() {
  const design = {
    name: $("m-name").value, system_id: value("m-system"), inlet_pressure_kpa: value("m-pressure"),
    design_flow_lps: value("m-flow"), roughness_c: value("m-roughness"),
    centre_elevation_m: value("m-elevation"), revolution_time_h: value("m-revolution"), spans: [],
    nozzle_selection: { tolerance: value("p-tolerance") / 100, brand: $("p-brand").value, model: $("p-model").value } };
  const regulators = [];
  spanRows().forEach(([length, diameter, spacing, elevation, regulator], i) => {
    design.spans.push({ length_m: Number(length), diameter_mm: Number(diameter),
      outlet_spacing_cm: Number(spacing), end_elevation_m: Number(elevation) });
    if (regulator !== "") {
      regulators.push({ span: i + 1, pressure_kpa: Number(regulator) });
    }
  });
  if (regulators.length > 0) {
    design.regulators = regulators;
  }
  if ($("drop-on").checked) {
    const [id, name, c] = $("drop-material").value.split(",");
    design.drop = { diameter_mm: value("drop-diameter"), length_m: value("drop-length"),
      material: { id: Number(id), name, c: Number(c) } };
  }
  if ($("g-model").value !== "") {
    const [brand, model] = JSON.parse($("g-model").value);
    design.end_gun = { ring_width_m: value("g-width"), booster_kpa: value("g-booster") };
    design.nozzle_selection.end_gun = { brand, model };
  }
  return design;
}

function setValue(id, text) {
  if (text !== undefined) {
    $(id).value = text;
  }
}

/// Fills the editor from a stored design file (SI files; what the editor has no field for is
/// kept as stored only in the file sent again).
function loadDesign(design) {
  setValue("m-name", design.name);
  setValue("m-system", design.system_id);
  setValue("m-pressure", design.inlet_pressure_kpa);
  setValue("m-flow", design.design_flow_lps);
  setValue("m-roughness", design.roughness_c);
  setValue("m-elevation", design.centre_elevation_m || 0);
  setValue("m-revolution", design.revolution_time_h);
  $("spans").tBodies[0].replaceChildren();
  const regulators = Array.isArray(design.regulators) ? design.regulators : [];
  design.spans.forEach((span, i) => {
    const regulator = regulators.find((r) => r.span === i + 1);
    addSpan({ ...span, regulator_kpa: regulator ? regulator.pressure_kpa : undefined });
  });
  const selection = design.nozzle_selection || {};
  setValue("p-tolerance", selection.tolerance * 100);
  if (selection.brand) {
    $("p-brand").value = selection.brand;
    fillModels($("p-brand"), $("p-model"));
  }
  setValue("p-model", selection.model);
}

// ---- the result --------------------------------------------------------------------------

function verdictOf(result) {
  const severities = result.findings.map((finding) => finding.severity);
  if (severities.includes("error")) {
    return "Fails: the design has errors";
  }
  if (severities.includes("warning")) {
    return "Passes with warnings";
  }
  return "Passes";
}

function showSummary(result) {
  const body = $("summary").tBodies[0];
  body.replaceChildren();
  const u = result.units;
  for (const [key, figure] of Object.entries(result.summary)) {
    if (figure === null || typeof figure === "object") {
      continue;
    }
    const row = body.insertRow();
    cell(row, key.replaceAll("_", " "), true);
    cell(row, number(figure, 2));
  }
  const row = body.insertRow();
  cell(row, "units", true);
  cell(row, u.pressure + ", " + u.flow + ", " + u.length + ", " + u.depth);
}

function showFindings(result) {
  const list = $("findings");
  list.replaceChildren();
  for (const finding of result.findings) {
    const item = document.createElement("li");
    item.className = finding.severity;
    item.textContent = finding.severity + ": " + finding.message;
    list.appendChild(item);
  }
}

function outletFigure(outlet, prefix) {
  const key = Object.keys(outlet).find((k) => k.startsWith(prefix));
  return key === undefined ? null : outlet[key];
}

function showOutlets(result) {
  const body = $("outlets").tBodies[0];
  body.replaceChildren();
  const u = result.units;
  for (const outlet of result.outlets) {
    const row = body.insertRow();
    cell(row, outlet.label, true);
    cell(row, number(outlet.distanciaAoPivot, 1) + " " + u.length);
    cell(row, outlet.aspersor ? outlet.aspersor.modelo + " " + outlet.aspersor.nome : "plugged");
    cell(row, number(outlet.pressao_real, 1) + " " + u.pressure);
    cell(row, number(outlet.caudal, 3) + " " + u.flow);
    cell(row, number(outletFigure(outlet, "depth_"), 2) + " " + u.depth);
  }
}

function drawPlot(id, datasets, xTitle) {
  if (state.plots[id]) {
    state.plots[id].destroy();
  }
  if (typeof Chart === "undefined") {
    return;
  }
  state.plots[id] = new Chart($(id), {
    type: "line",
    data: { datasets },
    options: { animation: false, parsing: false, responsive: true, maintainAspectRatio: false,
      scales: { x: { type: "linear", title: { display: true, text: xTitle } } } } });
}

function showResult(result) {
  state.result = result;
  $("verdict").textContent = verdictOf(result);
  $("verdict").className = verdictOf(result).startsWith("Fails") ? "fails" : "passes";
  showSummary(result);
  showFindings(result);
  showOutlets(result);
  const u = result.units;
  const points = (key) => result.outlets.map((o) => ({ x: o.distanciaAoPivot, y: key(o) }));
  drawPlot("design-plot", [
    { label: "pressure at the nozzle, " + u.pressure, data: points((o) => o.pressao_real), borderColor: "#1f5fa8", pointRadius: 0 },
    { label: "depth, " + u.depth, data: points((o) => outletFigure(o, "depth_")), borderColor: "#c05a12", pointRadius: 0 },
  ], "distance from the centre, " + u.length);
}

async function design() {
  window.clearTimeout(state.timer);
  try {
    say("Designing...");
    showResult(await api("POST", "/api/design?units=" + $("units").value, designFile()));
    say("Designed.");
  } catch (error) {
    $("verdict").textContent = "Cannot design: " + error.message;
    $("verdict").className = "fails";
    say(error.message);
  }
}

function designSoon() {
  if (state.result === null) {
    return;
  }
  window.clearTimeout(state.timer);
  state.timer = window.setTimeout(design, 400);
}

// ---- stored charts -----------------------------------------------------------------------

async function refreshCharts() {
  const body = $("charts").tBodies[0];
  body.replaceChildren();
  for (const chart of await api("GET", "/api/charts")) {
    const row = body.insertRow();
    cell(row, chart.id, true);
    cell(row, chart.name);
    cell(row, chart.system);
    const actions = row.insertCell();
    actions.appendChild(button("Open " + chart.name, () => openChart(chart.id).catch((e) => say(e.message))));
    const report = document.createElement("a");
    report.href = "/api/charts/" + chart.id + "/report";
    report.target = "_blank";
    report.rel = "noopener";
    report.textContent = "Report of " + chart.name;
    actions.appendChild(report);
    actions.appendChild(button("Delete " + chart.name, () => deleteChart(chart.id).catch((e) => say(e.message))));
  }
}

async function saveChart() {
  try {
    const name = $("chart-name").value.trim();
    const saved = await api("POST", "/api/charts?units=" + $("units").value,
      { name, system: value("m-system"), design: designFile() });
    showResult(saved.result);
    say("Chart \"" + saved.name + "\" stored with key " + saved.id + ".");
    await refreshCharts();
  } catch (error) {
    say("Not stored: " + error.message);
  }
}

async function openChart(id) {
  const chart = await api("GET", "/api/charts/" + id);
  if (chart.design_file === null) {
    say("Chart " + id + " was stored without its design file.");
    return;
  }
  loadDesign(chart.design_file);
  await design();
  say("Chart " + id + " opened.");
}

async function deleteChart(id) {
  await api("DELETE", "/api/charts/" + id);
  say("Chart " + id + " deleted.");
  await refreshCharts();
}

// ---- the catalogue -----------------------------------------------------------------------

function fillModels(brandSelect, modelSelect) {
  modelSelect.replaceChildren();
  for (const model of state.models.filter((m) => m.brand === brandSelect.value)) {
    option(modelSelect, model.name, model.name);
  }
}

async function loadCatalogue() {
  state.brands = await api("GET", "/api/catalogue/brands");
  state.models = await api("GET", "/api/catalogue/models");
  for (const select of [$("p-brand"), $("c-brand")]) {
    const chosen = select.value;
    select.replaceChildren();
    state.brands.forEach((brand) => option(select, brand.name, brand.name));
    if (chosen) {
      select.value = chosen;
    }
  }
  const gun = $("g-model");
  gun.replaceChildren();
  option(gun, "", "none");
  state.models.filter((m) => /gun/i.test(m.name)).forEach((m) => option(gun, JSON.stringify([m.brand, m.name]), m.brand + " " + m.name));
  fillModels($("p-brand"), $("p-model"));
  fillModels($("c-brand"), $("c-model"));
}

async function showNozzles() {
  const query = new URLSearchParams({ brand: $("c-brand").value, model: $("c-model").value, units: $("units").value });
  const body = $("nozzles").tBodies[0];
  body.replaceChildren();
  for (const nozzle of await api("GET", "/api/catalogue/nozzles?" + query)) {
    const row = body.insertRow();
    cell(row, nozzle.id, true);
    cell(row, nozzle.marca);
    cell(row, nozzle.modelo);
    cell(row, nozzle.nome);
    cell(row, number(nozzle.pmin, 1) + " to " + number(nozzle.pmax, 1));
    cell(row, number(nozzle.qmin, 3) + " to " + number(nozzle.qmax, 3));
  }
}

async function importNozzles() {
  try {
    const answer = await api("POST", "/api/catalogue/import", { csv: $("c-csv").value, units: $("c-units").value });
    say(answer.message);
    await loadCatalogue();
  } catch (error) {
    say("Not imported: " + error.message);
  }
}

// ---- field tests -------------------------------------------------------------------------

function readFile(input) {
  return new Promise((resolve, reject) => {
    if (input.files.length === 0) {
      reject(new Error("choose the crew's CSV file first"));
      return;
    }
    const reader = new FileReader();
    reader.onload = () => resolve(reader.result);
    reader.onerror = () => reject(new Error("cannot read " + input.files[0].name));
    reader.readAsText(input.files[0]);
  });
}

async function evaluate() {
  try {
    const request = { readings_csv: await readFile($("f-file")), gauge_diameter_m: value("f-gauge"),
      timer_percent: value("f-timer"), save: $("f-save").checked };
    if ($("f-name").value.trim() !== "") {
      request.name = $("f-name").value.trim();
    }
    const compare = $("f-compare").value;
    if (compare === "design") {
      request.design = designFile();
    } else if (compare !== "") {
      request.chart = Number(compare);
    }
    showEvaluation(await api("POST", "/api/evaluate", request));
    say("Evaluated.");
  } catch (error) {
    $("f-verdict").textContent = "Cannot evaluate: " + error.message;
    say(error.message);
  }
}

function showEvaluation(evaluation) {
  const together = evaluation.together;
  $("f-verdict").textContent = "CU " + number(together.cu_hh_percent, 1) + " %, DU " + number(together.du_lq_percent, 1) + " %";
  const body = $("f-figures").tBodies[0];
  body.replaceChildren();
  const figures = [["collectors counted", together.collectors], ["mean depth, mm", number(together.mean_depth_mm, 2)],
    ["low-quarter mean, mm", number(together.low_quarter_mean_mm, 2)],
    ["expected depth, mm", number(evaluation.expected_depth_mm, 2)],
    ["applied, % of expected", number(evaluation.applied_percent_of_expected, 1)],
    ["outliers", evaluation.outliers.length], ["left out", evaluation.left_out.length]];
  if (evaluation.comparison) {
    figures.push(["compared with", evaluation.comparison.design_file]);
  }
  for (const [label, figure] of figures) {
    const row = body.insertRow();
    cell(row, label, true);
    cell(row, figure === undefined ? "" : figure);
  }
  const lines = {};
  for (const collector of evaluation.collectors) {
    (lines[collector.line] = lines[collector.line] || []).push({ x: collector.distance_m, y: collector.depth_mm });
  }
  const colours = ["#1f5fa8", "#c05a12", "#2e7d32"];
  drawPlot("field-plot", Object.entries(lines).map(([line, data], i) =>
    ({ label: "line " + line + ", mm", data, borderColor: colours[i % colours.length], pointRadius: 2 })), "distance from the centre, m");
}

async function refreshComparisons() {
  const select = $("f-compare");
  const chosen = select.value;
  while (select.options.length > 2) {
    select.remove(2);
  }
  for (const chart of await api("GET", "/api/charts")) {
    option(select, String(chart.id), "stored chart " + chart.id + " " + chart.name);
  }
  select.value = chosen;
}

// ---- start -------------------------------------------------------------------------------

async function start() {
  for (const link of document.querySelectorAll(".page-link")) {
    link.addEventListener("click", () => {
      showPage(link.dataset.page);
      if (link.dataset.page === "field") {
        refreshComparisons().catch((e) => say(e.message));
      }
    });
  }
  $("add-span").addEventListener("click", () => {
    addSpan({ length_m: 50, diameter_mm: 160, outlet_spacing_cm: 290, end_elevation_m: value("m-elevation") });
    designSoon();
  });
  $("design").addEventListener("click", design);
  $("save").addEventListener("click", saveChart);
  $("print").addEventListener("click", () => window.print());
  $("refresh-charts").addEventListener("click", () => refreshCharts().catch((e) => say(e.message)));
  $("units").addEventListener("change", designSoon);
  $("p-brand").addEventListener("change", () => { fillModels($("p-brand"), $("p-model")); designSoon(); });
  $("c-brand").addEventListener("change", () => fillModels($("c-brand"), $("c-model")));
  $("c-show").addEventListener("click", () => showNozzles().catch((e) => say(e.message)));
  $("c-import").addEventListener("click", importNozzles);
  $("evaluate").addEventListener("click", evaluate);
  for (const input of document.querySelectorAll(".editor fieldset input, .editor fieldset select")) {
    if (!["chart-name", "units"].includes(input.id)) {
      input.addEventListener("change", designSoon);
    }
  }
  showPage("design");
  try {
    state.token = (await api("GET", "/api/session")).token;
    await loadCatalogue();
    await refreshCharts();
    say("Ready.");
  } catch (error) {
    say(error.message);
  }
}

document.addEventListener("DOMContentLoaded", start);
