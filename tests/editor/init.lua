-- zentu-cmd's language server for every *.par file, one server for all of them.
local zentu
vim.api.nvim_create_autocmd({ "BufRead", "BufNewFile" }, { pattern = "*.par", callback = function(args)
  zentu = zentu or vim.lsp.start_client({ name = "zentu-cmd", cmd = { "zentu-cmd", "lsp" } })
  vim.lsp.buf_attach_client(args.buf, zentu)
end })
