-- Edits the examples in Neovim through zentu-cmd's language server as a user would, and quits
-- with status 1 at the first difference from what the server must give.
local examples = assert(os.getenv("ZENTU_EXAMPLES"), "ZENTU_EXAMPLES names the examples folder")
local expected = assert(os.getenv("ZENTU_EXPECTED"), "ZENTU_EXPECTED names the expected outputs")
local WAIT = 10000
vim.o.hidden = true

local published = {}
local publish = vim.lsp.handlers["textDocument/publishDiagnostics"]
vim.lsp.handlers["textDocument/publishDiagnostics"] = function(err, result, ctx, config)
  publish(err, result, ctx, config)
  published[vim.uri_to_bufnr(result.uri)] = (published[vim.uri_to_bufnr(result.uri)] or 0) + 1
end

local function check(condition, what, ...)
  if not condition then error(string.format(what, ...), 2) end
end

local function same(actual, wanted, what)
  check(vim.deep_equal(actual, wanted), "%s: got %s, want %s", what, vim.inspect(actual), vim.inspect(wanted))
end

local function lines() return vim.api.nvim_buf_get_lines(0, 0, -1, true) end

-- The 0-based number of the first line that holds the text.
local function line_of(text)
  for number, line in ipairs(lines()) do
    if line:find(text, 1, true) then return number - 1 end
  end
  error("no line holds " .. text)
end

local function set_line(number, text) vim.api.nvim_buf_set_lines(0, number, number + 1, true, { text }) end

-- The findings of the buffer once the server has published after the last change.
local function findings_after(change)
  local buffer = vim.api.nvim_get_current_buf()
  local before = published[buffer] or 0
  change()
  if vim.api.nvim_get_current_buf() ~= buffer then
    buffer, before = vim.api.nvim_get_current_buf(), 0
  end
  check(vim.wait(WAIT, function() return (published[buffer] or 0) > before end), "no findings published")
  local found = {}
  for _, d in ipairs(vim.diagnostic.get(0)) do
    table.insert(found, { d.lnum, d.col, d.end_col, d.severity, d.code })
  end
  return found
end

local function request(method, line, character, extra)
  local params = vim.tbl_extend("force", {
    textDocument = { uri = vim.uri_from_bufnr(0) }, position = { line = line, character = character } }, extra or {})
  local replies = vim.lsp.buf_request_sync(0, method, params, WAIT)
  check(replies and next(replies), "%s: no reply", method)
  local _, reply = next(replies)
  check(reply.err == nil, "%s: %s", method, vim.inspect(reply.err))
  return reply.result
end

local function labels(items)
  local found = {}
  for _, item in ipairs(items.items or items) do table.insert(found, item.label) end
  return found
end

local function session()
  same(findings_after(function() vim.cmd("edit " .. examples .. "/topology.par") end), {}, "topology.par")

  -- A misspelt reference is found as it is typed, at its place, and goes when it is mended.
  local reference = line_of("DRESP = vol")
  same(findings_after(function() set_line(reference, "  DRESP = voll") end),
       { { reference, 10, 14, vim.diagnostic.severity.WARN, "dangling-reference" } }, "misspelt reference")
  same(findings_after(function() set_line(reference, "  DRESP = vol") end), {}, "mended reference")

  -- Completing an item that the response lacks, then its keyword.
  local volume = line_of("ID_NAME = vol")
  vim.api.nvim_buf_set_lines(0, volume + 1, volume + 1, true, { "  UPD" })
  same(labels(request("textDocument/completion", volume + 1, 5)), { "LOADCASE", "UPDATE_TYPE", "COEFFICIENT" },
       "item names")
  set_line(volume + 1, "  UPDATE_TYPE = ")
  same(labels(request("textDocument/completion", volume + 1, 16)), { "CALCULATED", "RECEIVED" }, "keywords")
  vim.api.nvim_buf_set_lines(0, volume + 1, volume + 2, true, {})

  -- From the objective's response to the operator that it names.
  local objective = line_of("DRESP = weighted_compliance")
  local location = request("textDocument/definition", objective, 12)
  vim.lsp.util.jump_to_location(location, "utf-16")
  same(vim.api.nvim_win_get_cursor(0), { line_of("ID_NAME = weighted_compliance"), 0 }, "definition")

  -- Formatting lays a disordered file out as `zentu-cmd format` does.
  set_line(objective, "DRESP=weighted_compliance   ")
  vim.lsp.util.apply_text_edits(request("textDocument/formatting", 0, 0, { options = { tabSize = 2, insertSpaces = true } }),
                                0, "utf-16")
  same(lines(), vim.fn.readfile(expected .. "/topology.format.par"), "formatted text")

  -- Renaming a response renames its references and expression terms with it.
  local expression = line_of("ADD_FILE")
  check(request("textDocument/prepareRename", expression, 3) == nil, "an item name is no identifier")
  local edit = request("textDocument/rename", expression, 19, { newName = "compliance_1" })
  vim.lsp.util.apply_workspace_edit(edit, "utf-16")
  same({ lines()[line_of("ID_NAME = compliance_1") + 1], lines()[expression + 1] },
       { "  ID_NAME = compliance_1", "  ADD_FILE = 2 * (%compliance_1% + %C2%) + %VOL%" }, "renamed")

  -- A job in a schema of its own finds it and reads clean.
  same(findings_after(function() vim.cmd("edit " .. examples .. "/custom.par") end), {}, "custom.par")
end

local ok, failure = pcall(session)
if not ok then
  io.stderr:write("editor session: " .. tostring(failure) .. "\n")
  vim.cmd("cquit 1")
end
vim.cmd("qall!")
