-- Links between the project's pages become links between the release's HTML pages; a link to what is not in the release
-- becomes its text.
local released = { '^docs/', '^samples/', '^README%.md', '^CHANGELOG%.md' }
local folder = pandoc.path.directory(PANDOC_STATE.input_files[1])

local function from_root(target)
  local path = folder == '.' and target or folder .. '/' .. target
  local steps
  repeat path, steps = path:gsub('[^/]+/%.%./', '') until steps == 0
  return path
end

local function is_released(target)
  for _, pattern in ipairs(released) do
    if from_root(target):match(pattern) then return true end
  end
  return false
end

function Link(link)
  if link.target:match('^%a+:') or link.target:match('^#') then return link end
  if not is_released(link.target) then return link.content end
  if from_root(link.target):match('^samples/') then return link end
  link.target = link.target:gsub('%.md$', '.html'):gsub('%.md#', '.html#')
  link.content = link.content:walk { Str = function(word) return pandoc.Str((word.text:gsub('%.md$', ''))) end }
  return link
end
